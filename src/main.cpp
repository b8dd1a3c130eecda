#include "shell/Application.h"

int main(int argc, char** argv)
{
    return vonnel::runProgram(argc, argv);
}
