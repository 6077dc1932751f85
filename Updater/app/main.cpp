#include "Updater/app/RunApplication.h"

#include <vector>

int main(int argc, char** argv)
{
    std::vector<String> args;
    for (int i = 1; i < argc; ++i)
        args.push_back(String(argv[i]));
    return runApplication(args);
}
