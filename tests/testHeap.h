// The heap of the test program: counts allocations, lets them fail, and puts arrays in front of unreadable memory.

#pragma once

/// Allocations of this thread that are not freed yet.
long liveAllocations();

/// From its construction to its end, the allocation of this thread behind `successes` good ones fails; with `forGood`
/// every later one as well.
class FailingNew {
public:
    FailingNew(long successes, bool forGood);
    ~FailingNew();
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;
    /// Whether an allocation has failed.
    bool hasFailed() const;
};

/// From its construction to its end, every array that this thread allocates ends where unreadable memory begins.
class GuardedArrays {
public:
    GuardedArrays();
    ~GuardedArrays();
    GuardedArrays(const GuardedArrays&) = delete;
    GuardedArrays& operator=(const GuardedArrays&) = delete;
    /// Arrays allocated since the construction.
    long count() const;
};
