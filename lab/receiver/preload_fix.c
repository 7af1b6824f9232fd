/*
 * Stands in front of libumockdev-preload.so.0 in LD_PRELOAD and keeps from it what it cannot take.
 *
 * umockdev 0.17.16 notes every open of a path below /dev in a table of 50 entries, failed opens too,
 * and aborts when the table is full: probing /dev for sound and video devices is enough. It also
 * answers ENOTTY to every ioctl on a real device node. So a path below /dev that the test bed does
 * not have goes straight to the C library here; everything else goes on to umockdev.
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

typedef int (*open_function)(const char *, int, ...);
typedef int (*open2_function)(const char *, int);
typedef FILE *(*fopen_function)(const char *, const char *);

static int belongs_to_test_bed(const char *path)
{
    char mocked[2 * PATH_MAX];
    const char *root = getenv("UMOCKDEV_DIR");
    int saved_errno, exists;
    if (!path || strncmp(path, "/dev/", 5) != 0 || !root)
        return 1;
    if (snprintf(mocked, sizeof mocked, "%s%s", root, path) >= (int)sizeof mocked)
        return 1;
    saved_errno = errno;
    /* not access(): umockdev would translate the path once more */
    exists = syscall(SYS_faccessat, AT_FDCWD, mocked, F_OK) == 0;
    errno = saved_errno;
    return exists;
}

static void *function_for(const char *path, const char *name)
{
    static void *libc;
    if (belongs_to_test_bed(path))
        return dlsym(RTLD_NEXT, name);
    if (!libc)
        libc = dlopen("libc.so.6", RTLD_LAZY);
    return dlsym(libc, name);
}

#define WRAP_OPEN(name)                                                                                      \
    int name(const char *path, int flags, ...)                                                               \
    {                                                                                                        \
        open_function function = (open_function)function_for(path, #name);                                   \
        if (flags & O_CREAT || (flags & O_TMPFILE) == O_TMPFILE) {                                           \
            va_list arguments;                                                                               \
            mode_t mode;                                                                                     \
            va_start(arguments, flags);                                                                      \
            mode = va_arg(arguments, mode_t);                                                                \
            va_end(arguments);                                                                               \
            return function(path, flags, mode);                                                              \
        }                                                                                                    \
        return function(path, flags);                                                                        \
    }

#define WRAP_OPEN2(name)                                                                                     \
    int name(const char *path, int flags);                                                                   \
    int name(const char *path, int flags)                                                                    \
    {                                                                                                        \
        return ((open2_function)function_for(path, #name))(path, flags);                                     \
    }

#define WRAP_FOPEN(name)                                                                                     \
    FILE *name(const char *path, const char *mode)                                                           \
    {                                                                                                        \
        return ((fopen_function)function_for(path, #name))(path, mode);                                      \
    }

WRAP_OPEN(open)
WRAP_OPEN(open64)
WRAP_OPEN2(__open_2)
WRAP_OPEN2(__open64_2)
WRAP_FOPEN(fopen)
WRAP_FOPEN(fopen64)
