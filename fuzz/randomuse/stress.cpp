// Long random-use runs: every control (or one), several seeds, events per second, and every
// distinct failure shrunk to a short list. Exit status 1 when anything failed.
//   kel_randomuse [events] [--seeds 1,2,3] [--class KelText] [--shrink seconds]
//                 [--print from:to]   (print the events of that range instead of running them)
#include "kelfixture.h"
#include "randomuse.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMap>
#include <cstdio>

using namespace kel;

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    test::useRuntime();
    randomuse::installCrashReporter();

    int count = 100000;
    QList<quint64> seeds = {1, 2, 3};
    QStringList classes = randomuse::controlClasses();
    randomuse::Options options;
    int shrinkSeconds = 120;
    int printFrom = -1, printTo = -1;
    const QStringList args = app.arguments().mid(1);
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString &a = args[i];
        const QString next = i + 1 < args.size() ? args[i + 1] : QString();
        if (a == u"--seeds") {
            seeds.clear();
            for (const QString &s : next.split(u','))
                seeds << s.toULongLong();
            ++i;
        } else if (a == u"--class") {
            classes = {next};
            ++i;
        } else if (a == u"--shrink") {
            shrinkSeconds = next.toInt();
            ++i;
        } else if (a == u"--print") {
            printFrom = next.section(u':', 0, 0).toInt();
            printTo = next.section(u':', 1, 1).toInt();
            ++i;
        } else if (a.toInt() > 0) {
            count = a.toInt();
        } else {
            std::fprintf(stderr, "kel_randomuse: unknown argument %s\n", qPrintable(a));
            return 2;
        }
    }

    bool anyFailure = false;
    for (const QString &cls : classes) {
        QMap<QString, int> seen;
        for (quint64 seed : seeds) {
            randomuse::setPosition(seed, cls);
            const auto events = randomuse::generate(cls, seed, count);
            if (printFrom >= 0) {
                for (int i = printFrom; i <= printTo && i < int(events.size()); ++i)
                    std::printf("%s seed %llu event %d: %s\n", qPrintable(cls), seed, i, qPrintable(events[size_t(i)].describe()));
                continue;
            }
            qint64 runMs = 0;
            QMap<QString, int> failures;
            int pos = 0;
            while (pos < int(events.size())) {
                const std::vector<randomuse::Event> rest(events.begin() + pos, events.end());
                QElapsedTimer clock;
                clock.start();
                randomuse::Failure f = randomuse::run(cls, rest, options, pos);
                runMs += clock.elapsed();
                if (!f.failed())
                    break;
                anyFailure = true;
                ++failures[f.check];
                if (seen[f.check]++ == 0) {
                    // Shrink the list from the fresh start of this stretch to the failure.
                    std::vector<randomuse::Event> stretch(events.begin() + pos, events.begin() + f.index + 1);
                    randomuse::Failure local = f;
                    local.index = f.index - pos;
                    const auto shrunk = randomuse::shrink(cls, stretch, local, options, shrinkSeconds);
                    std::printf("FAIL %s", qPrintable(randomuse::report(cls, seed, f, shrunk)));
                    std::printf("  (events %d..%d of this seed, on a fresh control, reproduce it in full)\n", pos, f.index);
                    std::fflush(stdout);
                }
                pos = f.index + 1;
            }
            const double seconds = runMs / 1000.0;
            QStringList summary;
            for (auto it = failures.cbegin(); it != failures.cend(); ++it)
                summary << QStringLiteral("%1 x%2").arg(it.key()).arg(it.value());
            std::printf("%s seed %llu: %d events, %.1f s, %.0f events/s, %s\n", qPrintable(cls), seed, count, seconds,
                        seconds > 0 ? count / seconds : 0.0,
                        summary.isEmpty() ? "no failures" : qPrintable(u"failures: "_qs + summary.join(u", "_qs)));
            std::fflush(stdout);
        }
    }
    return anyFailure ? 1 : 0;
}
