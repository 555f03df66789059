// Any bytes given to the form-text reader: it reads them or names a line and a problem.
#include "frmreader.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QString codePages[] = {QStringLiteral("windows-1252"), QStringLiteral("GBK"), QStringLiteral("Shift_JIS")};
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    kel::classic::FrmForm form;
    kel::classic::Problem error;
    const QString &codePage = codePages[size > 0 ? data[0] % 3 : 0];
    if (!kel::classic::readFrm(bytes, QStringLiteral("fuzz.frm"), codePage, &form, &error)) {
        if (error.message.isEmpty() || error.line < 0)
            std::abort();
        return 0;
    }
    if (form.root.name.isEmpty())
        std::abort();
    return 0;
}
