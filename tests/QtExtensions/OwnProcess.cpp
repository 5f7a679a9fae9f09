#include "QtExtensions/OwnProcess.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

constexpr char kRerun[] = "PORT_TEST_RERUN";
constexpr int kPatience = 60000;

} // namespace

bool isRerun()
{
    return std::getenv(kRerun) != nullptr;
}

void rerun(const Environment& changes)
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
    process.start(QCoreApplication::applicationFilePath(),
                  {QString("--gtest_filter=%1.%2").arg(test->test_suite_name(), test->name())});
    const bool finished = process.waitForFinished(kPatience);
    const std::string output = process.readAll().toStdString();
    const char* fault = !finished                                        ? "does not end"
                        : process.exitStatus() != QProcess::NormalExit ? "crashes"
                        : process.exitCode() != 0                      ? "fails"
                                                                       : nullptr;
    if (fault || output.find("[  PASSED  ] 1 test.") == std::string::npos)
        ADD_FAILURE() << context << " the test " << (fault ? fault : "does not run") << "\n" << output;
}

LesserDisplay::LesserDisplay(const char* missing) : fServer(new QProcess)
{
    fServer->setProcessChannelMode(QProcess::SeparateChannels);
    // The kernel ends the server if this process does not come to do it.
    fServer->start("setpriv", {"--pdeathsig", "TERM", "Xvfb", "-displayfd", "1", "-screen", "0", "640x480x24",
                               "-extension", missing, "-noreset", "-nolisten", "tcp"});
    QByteArray number;
    QElapsedTimer timer;
    timer.start();
    while (!number.contains('\n') && timer.elapsed() < kPatience && fServer->state() != QProcess::NotRunning) {
        fServer->waitForReadyRead(1000);
        number += fServer->readAllStandardOutput();
    }
    if (number.contains('\n'))
        fName = ":" + number.trimmed().toStdString();
}

LesserDisplay::~LesserDisplay()
{
    fServer->terminate();
    fServer->waitForFinished();
    delete fServer;
}
