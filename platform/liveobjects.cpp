#include "platform/liveobjects.h"

namespace kel {

static int &liveCount()
{
    static int n = 0;
    return n;
}

LiveObject::LiveObject() { ++liveCount(); }
LiveObject::LiveObject(const LiveObject &) { ++liveCount(); }
LiveObject::~LiveObject() { --liveCount(); }
int liveObjects() { return liveCount(); }

} // namespace kel
