#include "tests/support/Solution.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

std::string Solution_Of(int level)
{
    char name[32];
    std::snprintf(name, sizeof name, "/levels/level%03d.txt", level);
    std::ifstream file(std::string(STAGE_CONTENT) + name);
    std::string steps;
    bool inSolution = false;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string word;
        words >> word;
        // The solution may go on over indented lines.
        const bool indented = !line.empty() && line[0] == ' ';
        if (word == "solution") {
            inSolution = true;
            words >> word;
        } else if (!indented || !inSolution) {
            inSolution = false;
            continue;
        }
        do {
            if (word.empty() || word == "solution") continue;
            const int count = word.size() > 1 ? std::atoi(word.c_str() + 1) : 1;
            steps.append(static_cast<size_t>(count), word[0]);
            word.clear();
        } while (words >> word);
    }
    return steps;
}
