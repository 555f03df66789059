#pragma once
// A host application's own header at a path the library also uses internally: the library's
// headers must never pick it up, nor hide it from the application.
namespace app {
struct Variant { int answer = 42; };
}
