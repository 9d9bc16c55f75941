// A recording fake of one of the programs the daemon runs. It goes by the name it is called with, writes
// its command line to the log and then does what the script for that command line says:
//
//   once           only this time: the script is removed, the next call finds none
//   print <text>   one line on standard output
//   error <text>   one line on standard error
//   hang           never ends by itself
//   deaf           from now on does not end when asked to (SIGTERM)
//   hold           waits while the test has the file "hold" locked
//   descriptors    one line in the log for every file it has inherited, standard input, output and error
//   aside crash          ends by a signal exit <status>  ends with that status
//
// Without a script it ends with status 0 and prints nothing. Linked statically: what is preloaded into the
// daemon (device fakes, sanitizers) is inherited and must not act here.

#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <sys/file.h>
#include <unistd.h>
#include <vector>

namespace {

std::string baseName(const std::string &path)
{
    return path.substr(path.find_last_of('/') + 1);
}

std::string quotedWhereNeeded(const std::string &word)
{
    const bool plain = !word.empty() && word.find_first_of(" \"\n") == std::string::npos;
    return plain ? word : '"' + word + '"';
}

std::string commandLine(int argc, char **argv)
{
    std::string line = baseName(argv[0]);
    for (int i = 1; i < argc; ++i) {
        line += ' ' + quotedWhereNeeded(argv[i]);
    }
    return line;
}

// One write, so that lines of commands that overlap stay whole.
bool record(const std::string &directory, const std::string &line)
{
    const int log = open((directory + "/log").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    const std::string text = line + '\n';
    const bool isWritten = write(log, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return close(log) == 0 && isWritten;
}

// The script for the longest beginning of the command line that has one, whole words only.
std::string scriptFor(const std::string &directory, std::string line)
{
    while (!line.empty()) {
        std::string path = directory + "/scripts/";
        path += line;
        if (access(path.c_str(), R_OK) == 0) {
            return path;
        }
        const auto lastBlank = line.find_last_of(' ');
        line.resize(lastBlank == std::string::npos ? 0 : lastBlank);
    }
    return {};
}

std::vector<std::string> linesOf(const std::string &path)
{
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

void recordDescriptors(const std::string &directory)
{
    constexpr int mostDescriptors = 1024;
    for (int descriptor = STDERR_FILENO + 1; descriptor < mostDescriptors; ++descriptor) {
        std::vector<char> target(PATH_MAX);
        const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
        const ssize_t length = readlink(link.c_str(), target.data(), target.size());
        if (length > 0) {
            record(directory, "inherited " + std::string(target.data(), static_cast<std::size_t>(length)));
        }
    }
}

void hangForever()
{
    for (;;) {
        pause();
    }
}

void perform(const std::string &instruction, const std::string &script, const std::string &directory)
{
    const auto blank = instruction.find(' ');
    const std::string word = instruction.substr(0, blank);
    const std::string text = blank == std::string::npos ? std::string() : instruction.substr(blank + 1);
    if (word == "once") {
        unlink(script.c_str());
    } else if (word == "print") {
        std::puts(text.c_str());
        std::fflush(stdout);
    } else if (word == "error") {
        std::fprintf(stderr, "%s\n", text.c_str());
    } else if (word == "hang") {
        hangForever();
    } else if (word == "deaf") {
        std::signal(SIGTERM, SIG_IGN);
    } else if (word == "hold") {
        flock(open((directory + "/hold").c_str(), O_RDONLY | O_CLOEXEC), LOCK_SH);
    } else if (word == "descriptors") {
        recordDescriptors(directory);
    } else if (word == "crash") {
        raise(SIGKILL);
    } else if (word == "exit") {
        std::exit(std::atoi(text.c_str()));
    } else {
        std::fprintf(stderr, "fake-command: unknown instruction \"%s\"\n", instruction.c_str());
        std::abort();
    }
}

} // namespace

int main(int argc, char **argv)
{
    const char *directoryVariable = std::getenv("FAKE_COMMAND_DIR");
    const std::string directory = directoryVariable != nullptr ? directoryVariable : ".";
    const std::string line = commandLine(argc, argv);
    const std::string script = scriptFor(directory, line);
    const std::vector<std::string> instructions = linesOf(script);
    if (!record(directory, line)) {
        std::perror("fake-command: log");
        return EXIT_FAILURE;
    }
    for (const std::string &instruction : instructions) {
        perform(instruction, script, directory);
    }
    return EXIT_SUCCESS;
}
