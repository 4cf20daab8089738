// Forced into every mutated source: tells which mutant runs and notes which ones were reached.
#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvio_mutation {

// One byte per mutant, shared by every process of a test; null when nobody asked.
inline unsigned char* reachedMap()
{
    const char* path = std::getenv("TARVIO_MUTANTS_REACHED");
    const int file = path ? ::open(path, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0)
        return nullptr;
    struct stat status;
    void* map = MAP_FAILED;
    if (::fstat(file, &status) == 0)
        map = ::mmap(nullptr, static_cast<size_t>(status.st_size), PROT_READ | PROT_WRITE,
                     MAP_SHARED, file, 0);
    ::close(file);
    return map == MAP_FAILED ? nullptr : static_cast<unsigned char*>(map);
}

inline bool isActive(int mutant)
{
    static const char* const chosen = std::getenv("TARVIO_MUTANT");
    static const int active = chosen ? std::atoi(chosen) : -1;
    static unsigned char* const reached = reachedMap();
    if (reached)
        reached[mutant] = 1;
    return mutant == active;
}

} // namespace tarvio_mutation
