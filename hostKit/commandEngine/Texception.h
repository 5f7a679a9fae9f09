#pragma once

#include "commandEngine/commandMessages.h"

#include <exception>

/** What a command throws inside itself. It never leaves the command. */
class Texception : public std::exception
{
public:
    /** @param message  a key of commandMessage(), or a text */
    explicit Texception(const Tstring& message) : fKey(message), fText(commandMessage(message)) {}

    const Tstring& key() const { return fKey; }
    const char* what() const noexcept override { return fText.asChar(); }

private:
    Tstring fKey;
    Tstring fText;
};
