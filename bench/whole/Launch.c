/* Runs a program with its output dropped and prints its CPU seconds and its peak memory in KiB. A small process must do
 * this: until it executes its program, a new process counts the memory of the one that made it. */

#define _GNU_SOURCE
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

static double seconds(struct timeval time) {
    return (double)time.tv_sec + (double)time.tv_usec * 1e-6;
}

int main(int count, char** arguments) {
    struct rusage usage;
    int status = 0;
    const pid_t process = fork();
    if (process < 0 || count < 2)
        return EXIT_FAILURE;
    if (process == 0) {
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        execv(arguments[1], arguments + 1);
        _exit(127);
    }
    wait4(process, &status, 0, &usage);
    printf("%.6f %ld\n", seconds(usage.ru_utime) + seconds(usage.ru_stime), usage.ru_maxrss);
    return status == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
