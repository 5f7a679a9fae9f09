#include "QtExtensions/OwnProcess.h"

#include <QCoreApplication>
#include <QProcess>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

constexpr char kRerun[] = "PORT_TEST_RERUN";

} // namespace

bool isRerun()
{
    return std::getenv(kRerun) != nullptr;
}

void rerun(const Environment& changes, const char* missing)
{
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(kRerun, "1");
    // Meant for this process, which CTest may have given a share of the tests.
    environment.remove("GTEST_FILTER");
    environment.remove("GTEST_OUTPUT");
    std::string context = "with";
    for (const auto& [name, value] : changes) {
        environment.insert(name, value);
        context += std::string(" ") + name + "=" + value;
    }

    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    QStringList command{QCoreApplication::applicationFilePath(),
                        QString("--gtest_filter=%1.%2").arg(test->test_suite_name(), test->name())};
    if (missing)
        command = QStringList{"xvfb-run", "-a", "-s", QString("-extension %1").arg(missing)} + command;
    process.start(command.takeFirst(), command);
    const bool finished = process.waitForFinished(60000);
    const std::string output = process.readAll().toStdString();
    const char* fault = !finished                                      ? "does not end"
                        : process.exitStatus() != QProcess::NormalExit ? "crashes"
                        : process.exitCode() != 0                      ? "fails"
                                                                       : nullptr;
    if (fault || output.find("[  PASSED  ] 1 test.") == std::string::npos)
        ADD_FAILURE() << context << " the test " << (fault ? fault : "does not run") << "\n" << output;
}
