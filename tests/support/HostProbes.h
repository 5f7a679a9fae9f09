#pragma once

#include "foundation/Taction.h"
#include "foundation/Tclient.h"
#include "foundation/TerrorHandler.h"
#include "foundation/Tevent.h"

#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/** Keeps what is reported to the error handler, which itself says nothing meanwhile. */
class ErrorCollector
{
public:
    struct Report
    {
        TerrorHandler::Tseverity severity;
        std::string message;
    };

    ErrorCollector();
    ErrorCollector(const ErrorCollector&) = delete;
    ErrorCollector& operator=(const ErrorCollector&) = delete;
    ~ErrorCollector();

    const std::vector<Report>& reports() const { return fReports; }
    std::vector<std::string> messages() const;
    void clear() { fReports.clear(); }

private:
    std::vector<Report> fReports;
    TerrorHandler* fFormerHandler;
    TerrorHandler::Tsubscription fSubscription;
};

/** A client that keeps the facts of each message it receives; the message itself is gone by then. */
class MessageCollector : public Tclient
{
public:
    struct Message
    {
        std::string type; ///< its metaclass's name
        TclientServer* server;
        std::string details; ///< what the describing function made of it
    };
    using Describe = std::function<std::string(const TserverModifiedMsg&)>;

    explicit MessageCollector(Describe describe = {}) : fDescribe(std::move(describe)) {}

    void receive(const TserverModifiedMsg& message) override;

    const std::vector<Message>& messages() const { return fMessages; }
    std::vector<std::string> types() const;
    int count(const std::string& type) const;
    void clear() { fMessages.clear(); }

private:
    Describe fDescribe;
    std::vector<Message> fMessages;
};

/** Takes what is written to a file descriptor, by this library or another, until it goes. */
class OutputCapture
{
public:
    OutputCapture(int descriptor, std::FILE* stream);
    OutputCapture(const OutputCapture&) = delete;
    OutputCapture& operator=(const OutputCapture&) = delete;
    ~OutputCapture();

    /** What has come so far. */
    std::string text() const;

private:
    int fDescriptor;
    std::FILE* fStream;
    std::FILE* fFile;
    int fFormer;
};

class StdoutCapture : public OutputCapture
{
public:
    StdoutCapture() : OutputCapture(1, stdout) {}
};

class StderrCapture : public OutputCapture
{
public:
    StderrCapture() : OutputCapture(2, stderr) {}
};

/** An environment variable set, or absent, for as long as this lives. */
class ScopedEnv
{
public:
    /** A null @p value takes the variable away. */
    ScopedEnv(const char* name, const char* value);
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;
    ~ScopedEnv();

private:
    std::string fName;
    std::optional<std::string> fFormer;
};
