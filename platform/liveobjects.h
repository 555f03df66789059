#pragma once

namespace kel {

// Counts one live object of the library for as long as it exists; 0 live objects means the
// library may be unloaded.
class LiveObject
{
public:
    LiveObject();
    LiveObject(const LiveObject &);
    LiveObject &operator=(const LiveObject &) = default;
    ~LiveObject();
};

int liveObjects();

} // namespace kel
