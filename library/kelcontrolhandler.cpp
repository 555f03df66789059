#include "library/kelcontrolhandler.h"

#include "library/librarysettings.h"

namespace kel {

void KelControlHandler::adopt(std::shared_ptr<IKelRuntime> runtime)
{
    adoptRuntime(std::move(runtime));
}

void KelControlHandler::SetRuntime(std::shared_ptr<QObject> Runtime)
{
    auto rt = std::dynamic_pointer_cast<IKelRuntime>(Runtime);
    if (Runtime && !rt)
        throw RuntimeError("SetRuntime: the object is not a run-time object");
    adopt(std::move(rt));
}

} // namespace kel
