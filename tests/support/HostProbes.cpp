#include "support/HostProbes.h"

#include "foundation/Tmetaclass.h"
#include "foundation/TserverModifiedMsg.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

ErrorCollector::ErrorCollector()
    : fFormerHandler(TerrorHandler::install(nullptr)),
      fSubscription(TerrorHandler::subscribe([this](TerrorHandler::Tseverity severity, const Tstring& message) {
          fReports.push_back({severity, message.asChar()});
      }))
{
}

ErrorCollector::~ErrorCollector()
{
    TerrorHandler::install(fFormerHandler);
}

std::vector<std::string> ErrorCollector::messages() const
{
    std::vector<std::string> messages;
    for (const Report& report : fReports)
        messages.push_back(report.message);
    return messages;
}

void MessageCollector::receive(const TserverModifiedMsg& message)
{
    fMessages.push_back({message.typeof()->name(), message.server(), fDescribe ? fDescribe(message) : std::string()});
}

std::vector<std::string> MessageCollector::types() const
{
    std::vector<std::string> types;
    for (const Message& message : fMessages)
        types.push_back(message.type);
    return types;
}

int MessageCollector::count(const std::string& type) const
{
    return static_cast<int>(std::count_if(fMessages.begin(), fMessages.end(),
                                          [&](const Message& message) { return message.type == type; }));
}

OutputCapture::OutputCapture(int descriptor, std::FILE* stream)
    : fDescriptor(descriptor), fStream(stream), fFile(std::tmpfile())
{
    if (!fFile)
        throw std::runtime_error("no temporary file to capture output in");
    std::cout.flush();
    std::fflush(fStream);
    fFormer = dup(fDescriptor);
    dup2(fileno(fFile), fDescriptor);
}

OutputCapture::~OutputCapture()
{
    std::cout.flush();
    std::fflush(fStream);
    dup2(fFormer, fDescriptor);
    close(fFormer);
    std::fclose(fFile);
}

std::string OutputCapture::text() const
{
    std::cout.flush();
    std::fflush(fStream);
    std::string text;
    char part[4096];
    // pread leaves the position alone, which the captured descriptor shares.
    for (ssize_t size = 0; (size = pread(fileno(fFile), part, sizeof(part), static_cast<off_t>(text.size()))) > 0;)
        text.append(part, static_cast<std::size_t>(size));
    return text;
}

ScopedEnv::ScopedEnv(const char* name, const char* value) : fName(name)
{
    if (const char* const former = std::getenv(name))
        fFormer = former;
    if (value)
        setenv(name, value, 1);
    else
        unsetenv(name);
}

ScopedEnv::~ScopedEnv()
{
    if (fFormer)
        setenv(fName.c_str(), fFormer->c_str(), 1);
    else
        unsetenv(fName.c_str());
}
