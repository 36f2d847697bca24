#pragma once

#include <boost/describe.hpp>

namespace velmo {

/// How the shelf holds a file: where it stands, as a copy of ours, or moved into our folder.
enum class ShelfStorage { reference, copy, moved };
BOOST_DESCRIBE_ENUM(ShelfStorage, reference, copy, moved)

} // namespace velmo
