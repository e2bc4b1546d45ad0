// Lets an allocation of the test program fail, to see what the library makes of it.

#pragma once

/// From its construction to its end, allocation number `successes` + 1 fails, and no other.
class FailingNew {
public:
    explicit FailingNew(long successes);
    ~FailingNew();
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;
    /// Whether an allocation has failed.
    bool hasFailed() const;
};
