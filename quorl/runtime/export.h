/* Marks what the shared libraries show, in C and in C++. Everything else is hidden in them. */
#ifndef QUORL_RUNTIME_EXPORT_H
#define QUORL_RUNTIME_EXPORT_H

#define QUORL_API __attribute__((visibility("default")))

#endif
