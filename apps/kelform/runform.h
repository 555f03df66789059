#pragma once
#include <QString>

class QCommandLineParser;
class QWidget;

namespace kel::kelform {

/// kelform's exit codes.
enum ExitCode { Done = 0, BadInput = 1, UsageError = 2 };

/// Loads kelform's, the library's and Qt's own translations for the user's locale (none for
/// English, whose texts are the source).
void installTranslations();
/// Declares the form runner's options (--db, --screenshot, --dump and the form file).
void addFormOptions(QCommandLineParser &cli);
/// Runs the form the options name (the order-entry example without one); returns the exit code.
int runForm(const QCommandLineParser &cli);
/// The PNG file --screenshot names, or "".
QString screenshotFile(const QCommandLineParser &cli);
/// Renders `window` to the PNG `file` without showing it on screen and prints the file's path.
int saveScreenshot(QWidget *window, const QString &file);

} // namespace kel::kelform
