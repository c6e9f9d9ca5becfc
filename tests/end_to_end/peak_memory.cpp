// peak-memory FILE COMMAND [ARGUMENT...]: runs the command, writes its greatest resident memory in
// KiB to FILE, and exits with its status. A program of its own because a process begins with the
// peak of the one that started it; this one is small.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  const pid_t pid = fork();
  if (pid == 0) {
    execv(argv[2], argv + 2);
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  if (pid < 0 || wait4(pid, &status, 0, &usage) != pid) return 1;
  std::FILE* file = std::fopen(argv[1], "w");
  if (file == nullptr) return 1;
  std::fprintf(file, "%ld\n", usage.ru_maxrss);
  if (std::fclose(file) != 0) return 1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
