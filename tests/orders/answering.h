#pragma once
// Message boxes for the order-form tests: every box recorded, the ones with a choice answered
// from a queue, then with `answer` (Cancel unless told).
#include "kelfixture.h"

namespace kel::test {

struct AnsweringServices : RecordingServices {
    QList<int> answers;
    int answer = 2;
    int MsgBox(const QString &prompt, int style, const QString &title) override
    {
        RecordingServices::MsgBox(prompt, style, title);
        return (style & 7) ? (answers.isEmpty() ? answer : answers.takeFirst()) : 1;
    }
    // The last message without the driver's details.
    QString said() const { return boxes.empty() ? QString() : boxes.back().prompt.section(QStringLiteral("\n\n"), 0, 0); }
};

// Installs them with today's clock and the fixed run-time object.
inline AnsweringServices *answerBoxes()
{
    auto s = std::make_unique<AnsweringServices>();
    AnsweringServices *raw = s.get();
    raw->now = QDateTime::currentDateTime();
    setServices(std::move(s));
    useRuntime();
    return raw;
}

} // namespace kel::test
