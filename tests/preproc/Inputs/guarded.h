/* a comment */
#ifndef GUARDED_H
#define GUARDED_H
guarded_text
#endif
/* behind it */
