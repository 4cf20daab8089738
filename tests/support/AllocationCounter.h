#pragma once

#include <cstddef>

/// Counts what a test's own program, the views linked into it included, asks operator new for while
/// the counter lives. What the libraries allocate on their own account (Qt: an event, a region) is
/// told apart by the address that operator new returns to and not counted.
///
/// One at a time. A library of its own: it replaces operator new in each program that links it.
class AllocationCounter
{
public:
    AllocationCounter();
    ~AllocationCounter();
    AllocationCounter(const AllocationCounter&) = delete;
    AllocationCounter& operator=(const AllocationCounter&) = delete;

    std::size_t count() const;

    /// What was allocated and not freed again.
    std::ptrdiff_t heldBytes() const;
};
