#pragma once
class QCommandLineParser;

namespace kel::kelform {

// Declares the form runner's options (--db, --screenshot, --dump and the form file).
void addFormOptions(QCommandLineParser &cli);
// Runs the form the options name (the order-entry example without one); returns the exit code.
int runForm(const QCommandLineParser &cli);

} // namespace kel::kelform
