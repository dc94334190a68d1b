#include "host/support/RunCommand.h"

#include <signal.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace {

std::string ContentOf(int descriptor) {
  std::string content;
  std::array<char, 4096> part;
  lseek(descriptor, 0, SEEK_SET);
  for (ssize_t got = read(descriptor, part.data(), part.size()); got > 0;
       got = read(descriptor, part.data(), part.size())) {
    content.append(part.data(), static_cast<std::size_t>(got));
  }
  return content;
}

[[noreturn]] void Become(const std::vector<std::string>& arguments, const std::string& folder) {
  std::string program = RAVELIN_PROGRAM;
  std::vector<std::string> words = arguments;
  std::vector<char*> pointers = {program.data()};
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  if (chdir(folder.c_str()) == 0) execv(program.c_str(), pointers.data());
  _exit(127);
}

}  // namespace

RunningCommand::RunningCommand(const std::vector<std::string>& arguments, const std::string& folder,
                               const std::function<void()>& prepare)
    : out_(memfd_create("out", 0)), err_(memfd_create("err", 0)) {
  process_ = fork();
  if (process_ < 0) throw std::runtime_error("cannot fork");
  if (process_ > 0) return;
  dup2(out_, STDOUT_FILENO);
  dup2(err_, STDERR_FILENO);
  if (prepare) prepare();
  Become(arguments, folder);
}

RunningCommand::~RunningCommand() {
  if (process_ > 0) {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  close(out_);
  close(err_);
}

CommandResult RunningCommand::Wait() {
  int status = 0;
  struct rusage usage = {};
  if (wait4(process_, &status, 0, &usage) != process_) throw std::runtime_error("cannot wait");
  process_ = -1;
  CommandResult result;
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) result.signalNumber = WTERMSIG(status);
  result.out = ContentOf(out_);
  result.err = ContentOf(err_);
  result.maxResidentKiB = usage.ru_maxrss;
  return result;
}

CommandResult RunCommand(const std::vector<std::string>& arguments, const std::string& folder,
                         const std::function<void()>& prepare) {
  return RunningCommand(arguments, folder, prepare).Wait();
}
