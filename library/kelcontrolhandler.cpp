#include "library/kelcontrolhandler.h"

#include "library/librarysettings.h"

namespace kel {

void KelControlHandler::SetRuntime(std::shared_ptr<IKelRuntime> Runtime)
{
    adoptRuntime(std::move(Runtime));
}

void KelControlHandler::SetRuntime(std::shared_ptr<QObject> Runtime)
{
    auto rt = std::dynamic_pointer_cast<IKelRuntime>(Runtime);
    if (Runtime && !rt)
        throw RuntimeError("SetRuntime: the object is not a run-time object");
    adoptRuntime(std::move(rt));
}

} // namespace kel
