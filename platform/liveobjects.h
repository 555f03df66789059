#pragma once
#include "kelexport.h"

namespace kel {

/// Counts one live object of the library for as long as it exists; 0 live objects means the
/// library may be unloaded.
class KEL_EXPORT LiveObject
{
public:
    LiveObject();
    /// A copy counts as one more.
    LiveObject(const LiveObject &);
    /// Assignment changes no count.
    LiveObject &operator=(const LiveObject &) = default;
    ~LiveObject();
};

KEL_EXPORT int liveObjects();

} // namespace kel
