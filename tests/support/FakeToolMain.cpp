// The program behind FakeTool.h: plain C++, so that it starts at once.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{

using Arguments = std::vector<std::string>;

std::string filled(std::string text, const Arguments &arguments)
{
    const auto replace = [&text](const std::string &mark, const std::string &by) {
        for (auto at = text.find(mark); at != std::string::npos;
             at = text.find(mark, at + by.size())) {
            text.replace(at, mark.size(), by);
        }
    };
    replace("\\n", "\n");
    for (std::size_t number = 1; number <= 9; ++number) {
        replace("$" + std::to_string(number),
                number <= arguments.size() ? arguments[number - 1] : std::string());
    }
    return text;
}

[[noreturn]] void hang()
{
    for (;;) {
        ::pause();
    }
}

void spawn(const std::string &path)
{
    const pid_t child = ::fork();
    if (child == 0) {
        hang();
    }
    std::ofstream(path) << child;
}

void printRaw(std::size_t count)
{
    for (std::size_t at = 0; at < count; ++at) {
        std::putchar(static_cast<int>(at & 0xFF));
    }
}

[[noreturn]] void flood()
{
    const std::string line(65536, 'x');
    for (;;) {
        std::fwrite(line.data(), 1, line.size(), stdout);
    }
}

void obey(const std::string &verb, std::istream &rest)
{
    std::string text;
    std::getline(rest >> std::ws, text);
    std::istringstream words(text);
    std::string path;
    if (verb == "print" || verb == "error") {
        std::fprintf(verb == "print" ? stdout : stderr, "%s\n", text.c_str());
    } else if (verb == "raw") {
        printRaw(std::stoul(text));
    } else if (verb == "flood") {
        flood();
    } else if (verb == "write") {
        words >> path >> std::ws;
        std::ofstream(path, std::ios::binary) << words.rdbuf();
    } else if (verb == "copy") {
        std::string to;
        words >> path >> to;
        std::ofstream(to, std::ios::binary) << std::ifstream(path, std::ios::binary).rdbuf();
    } else if (verb == "input") {
        std::string given;
        std::getline(std::cin, given, '\0');
        std::printf("input: %s\n", given.empty() ? "closed" : given.c_str());
    } else if (verb == "spawn") {
        spawn(text);
    } else if (verb == "sleep") {
        ::usleep(static_cast<useconds_t>(std::stoul(text)) * 1000);
    } else if (verb == "hang") {
        hang();
    } else if (verb == "crash") {
        std::signal(SIGSEGV, SIG_DFL);
        std::raise(SIGSEGV);
    } else if (verb == "closeout") {
        ::close(STDOUT_FILENO);
        ::close(STDERR_FILENO);
    } else if (verb == "exit") {
        std::exit(std::stoi(text));
    } else if (!verb.empty()) {
        std::fprintf(stderr, "unknown order %s\n", verb.c_str());
        std::exit(99);
    }
    std::fflush(stdout);
}

}  // namespace

int main(int count, char **values)
{
    const std::string self = values[0];
    const Arguments arguments(values + 1, values + count);
    std::ofstream seen(self + ".seen", std::ios::app);
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        seen << (at == 0 ? "" : "\x1F") << arguments[at];
    }
    seen << '\n';
    seen.close();
    std::ifstream orders(self + ".orders");
    std::string line;
    while (std::getline(orders, line)) {
        std::istringstream words(filled(line, arguments));
        std::string verb;
        words >> verb;
        obey(verb, words);
    }
    return 0;
}
