// A host without a display: interactWithUser declines in one line on
// standard error and hands the buffers back untouched, where Qt would end
// the host's process.

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <QCoreApplication>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "PluginLibrary.h"

TEST(NoDisplay, TheDialogDeclinesAndTheHostsBuffersStayAsTheyCame) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    int errPipe[2];
    ASSERT_EQ(pipe(errPipe), 0);
    const std::string display = dialogtest::displayWithoutServer();
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        // The host: its buffers hold a pattern no dialog would write.
        dup2(errPipe[1], 2);
        setenv("DISPLAY", display.c_str(), 1);
        for (const char* name : {"WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_SESSION_TYPE"}) unsetenv(name);
        gritwell::PluginLibrary plugin(GRITWELL_PLUGIN_PATH);
        std::array<char, 256> record;
        std::array<char, 44> transforms;
        record.fill(0x5A);
        transforms.fill(0x3C);
        const std::array<char, 256> sentRecord = record;
        const std::array<char, 44> sentTransforms = transforms;
        void* hostBlock[8] = {};
        hostBlock[kHostCallbackWord] = reinterpret_cast<void*>(&dialogtest::recordHostUpdate);
        const float result =
            plugin.interactWithUser(nullptr, 0.0, record.data(), 256, transforms.data(), 44, hostBlock);
        const bool untouched = record == sentRecord && transforms == sentTransforms;
        _exit(!plugin.ok() ? 3 : result != 1.0f ? 4 : !untouched ? 5 : 0);
    }
    close(errPipe[1]);
    std::string err;
    char buffer[256];
    for (ssize_t n; (n = read(errPipe[0], buffer, sizeof buffer)) > 0;) err.append(buffer, static_cast<std::size_t>(n));
    close(errPipe[0]);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status)) << "the host's process was ended: " << err;
    EXPECT_EQ(WEXITSTATUS(status), 0) << "3: no plug-in, 4: not 1.0, 5: buffers changed";
    EXPECT_EQ(err, "GritwellPlugin: the dialog needs a display, and none is usable (DISPLAY=" + display +
                       ", WAYLAND_DISPLAY unset, QT_QPA_PLATFORM unset)\n");
}
