#if 1
inside
