#include "app/commands.h"

int main(int count, char** arguments) {
    return tavrok::app::run(count, arguments);
}
