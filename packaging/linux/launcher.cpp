// Starts the viewer of the folder for Linux with that folder's own libraries, the C library and its loader
// among them, so that it does not matter which ones the machine has. Linked statically; lies beside the
// folder.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

std::string ownPath() {
    std::string path(4096, '\0');
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return path;
}

}  // namespace

int main(int, char** arguments) {
    const std::string self = ownPath();
    const std::string folder = self.substr(0, self.rfind('/')) + "/linux/";
    const std::string loader = folder + "lib/ld-linux-x86-64.so.2";
    // The loader is what the system takes for the program. What the viewer starts gets none of these
    // (openTextViewer).
    setenv("CINEDISC_PROGRAM", self.c_str(), 1);
    setenv("GCONV_PATH", (folder + "gconv").c_str(), 1);
    setenv("FONTCONFIG_FILE", (folder + "fonts.conf").c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb;wayland", 0);  // the second where there is no X server
    // Keyboards come described by the Wayland compositor, but the library wants a folder of descriptions to
    // exist.
    if (access("/usr/share/X11/xkb", R_OK) != 0) setenv("XKB_CONFIG_ROOT", folder.c_str(), 0);

    const std::string libraries = folder + "lib", program = folder + "bin/cinedisc";
    std::vector<const char*> command{loader.c_str(), "--inhibit-cache", "--library-path", libraries.c_str(),
                                     "--argv0",      arguments[0],      program.c_str()};
    for (char** argument = arguments + (arguments[0] ? 1 : 0); *argument; ++argument)
        command.push_back(*argument);
    command.push_back(nullptr);
    execv(loader.c_str(), const_cast<char* const*>(command.data()));
    std::perror(loader.c_str());
    return 127;
}
