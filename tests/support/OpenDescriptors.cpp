#include "tests/support/OpenDescriptors.h"

#include <algorithm>
#include <iterator>
#include <vector>

int descriptorSince(const std::set<int>& before)
{
    std::vector<int> added;
    std::ranges::set_difference(openDescriptors(), before, std::back_inserter(added));
    return added.size() == 1 ? added.front() : -1;
}
