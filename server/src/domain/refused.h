#pragma once

#include <stdexcept>

namespace tavrok::domain {

/** A wish that the rules do not allow: nothing was changed (the transaction is to be rolled back), the peer
 * gets the failure form of its endpoint, and what() is for the log. It never holds a secret. */
class refused : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace tavrok::domain
