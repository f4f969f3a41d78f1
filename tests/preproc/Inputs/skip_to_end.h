#if 0
not seen
