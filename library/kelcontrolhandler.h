#pragma once
#include "classfactory.h"
#include "runtimeinterface.h"
#include "../platform/kelexport.h"

#include <type_traits>

namespace kel {

/// Hands the library the host's run-time object.
class KEL_EXPORT KelControlHandler : public QObject
{
    Q_OBJECT
public:
    /// Counts as a live object of the library until destroyed.
    explicit KelControlHandler(QObject *parent = nullptr) : QObject(parent) {}

    /// Replaces the held run-time object and re-reads the separator, the digits and the colours
    /// from it. Controls already showing keep their colours until their next state change.
    template<class R>
        requires std::is_base_of_v<IKelRuntime, R>
    void SetRuntime(std::shared_ptr<R> Runtime) { adopt(std::move(Runtime)); }
    /// The late-bound form: the object must be a run-time object.
    Q_INVOKABLE void SetRuntime(std::shared_ptr<QObject> Runtime);

private:
    static void adopt(std::shared_ptr<IKelRuntime> runtime);
    LiveObject m_live;
};

} // namespace kel
