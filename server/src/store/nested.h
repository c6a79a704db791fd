#pragma once

#include <functional>

#include "store/connection.h"

namespace tavrok::store {

/** Runs a part of a transaction that can be undone by itself: what `work` throws undoes the part and is
 * thrown on. After a store::error the whole transaction is lost all the same. Not to be nested in itself. */
void nested(connection& with, const std::function<void()>& work);

} // namespace tavrok::store
