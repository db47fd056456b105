#pragma once

#include <cstdio>
#include <cstdlib>
#include <ctime>

/// Tells how often a test has tried something, for docs/robustness.md: prints it and, where MARLOPAD_FIGURES
/// names a file, adds a line "COUNT DATE NAME" to that. `name` is the figure's in the document. Figures of
/// one name that several tests of a run report are added up there, but of those whose names end in "at most"
/// the largest counts.
inline void reportFigure(const char *name, long long count)
{
    std::printf("%s: %lld\n", name, count);
    const char *const fileName = std::getenv("MARLOPAD_FIGURES");
    std::FILE *const file = fileName ? std::fopen(fileName, "a") : nullptr;
    if (!file)
        return;
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    char date[sizeof "2000-01-01"] = "";
    if (localtime_r(&now, &local))
        std::strftime(date, sizeof date, "%Y-%m-%d", &local);
    std::fprintf(file, "%lld %s %s\n", count, date, name);
    std::fclose(file);
}
