#pragma once

#include <thread>
#include <vector>

/// Four threads that run `turn(thread, number)` so many times each, and have ended.
template<class Turn>
void inThreads(int turns, Turn turn)
{
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([=] {
            for (int number = 0; number < turns; ++number)
                turn(thread, number);
        });
}
