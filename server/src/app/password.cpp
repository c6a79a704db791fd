#include "app/password.h"

#include <termios.h>
#include <unistd.h>

#include <iostream>

namespace tavrok::app {

std::string ask_password() {
    std::string typed;
    termios before{};
    if (::isatty(STDIN_FILENO) == 0 || ::tcgetattr(STDIN_FILENO, &before) != 0) {
        std::getline(std::cin, typed);
        return typed;
    }
    termios silent = before;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    std::cerr << "Password: " << std::flush;
    ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    std::getline(std::cin, typed);
    ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
    std::cerr << '\n';
    return typed;
}

} // namespace tavrok::app
