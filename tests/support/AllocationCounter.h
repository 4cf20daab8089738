#pragma once

#include <cstddef>

/// Counts what a test's own program, the views linked into it included, asks operator new for while
/// the counter lives. What the libraries allocate on their own account (Qt: an event, a region) is
/// told apart by the address that operator new returns to and not counted.
///
/// The source replaces operator new, so it is listed with each test that uses it. One at a time.
class AllocationCounter
{
public:
    AllocationCounter();
    ~AllocationCounter();
    AllocationCounter(const AllocationCounter&) = delete;
    AllocationCounter& operator=(const AllocationCounter&) = delete;

    std::size_t count() const;
    std::size_t bytes() const;
};
