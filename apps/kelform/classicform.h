#pragma once
class QCommandLineParser;

namespace kel::kelform {

// Declares the options for classic form files (--import, --out, --codepage).
void addClassicOptions(QCommandLineParser &cli);
// Runs a .frm form, or imports one into a .ui with --import. False when the command line names
// no classic form; otherwise *exitCode is the program's exit code.
bool runClassic(const QCommandLineParser &cli, int *exitCode);

} // namespace kel::kelform
