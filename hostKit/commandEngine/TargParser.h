#pragma once

#include "commandEngine/TcommandValue.h"
#include "commandEngine/Tsyntax.h"

/**
 * The arguments of one run of a command, checked against its syntax. Flags are asked for by their short name, with or
 * without the leading "-".
 */
class TargParser
{
public:
    /**
     * Takes arguments in place of earlier ones. With the query flag among them no flag has arguments.
     * @param syntax  must outlive the parser's use
     * @throws TfailedException for an unknown flag, one given twice, arguments that are missing, of a wrong type or out
     * of range, and too many objects; there are no arguments then
     */
    void parse(const Tsyntax& syntax, const TcommandTokens& tokens);
    void clear();

    bool isEdit() const { return fEdit; }
    bool isQuery() const { return fQuery; }

    /** Makes every flag count as given; the arguments of those that are not are missing all the same. */
    void setAllFlags(bool all) { fAllFlags = all; }
    bool isFlagSet(const char* shortName) const { return fAllFlags || uses(shortName) > 0; }
    /** How often the flag was given. */
    unsigned uses(const char* shortName) const;

    /** \name Arguments
     * Argument @p index of use @p use of a flag.
     * @throws TfailedException when it was not given or is of another type */
    ///@{
    bool boolean(const char* shortName, unsigned index = 0, unsigned use = 0) const;
    int integer(const char* shortName, unsigned index = 0, unsigned use = 0) const;
    double real(const char* shortName, unsigned index = 0, unsigned use = 0) const;
    Tstring string(const char* shortName, unsigned index = 0, unsigned use = 0) const;
    TscriptPtr script(const char* shortName, unsigned index = 0, unsigned use = 0) const;
    ///@}

    /** Names of the objects that the command is about. */
    const std::vector<Tstring>& objects() const { return fObjects; }

private:
    using Tvalue = std::variant<bool, int, double, Tstring, TscriptPtr>;
    struct Tuse
    {
        const Tsyntax::Tflag* flag;
        std::vector<Tvalue> values;
    };

    static Tvalue convert(const Tsyntax::Tflag& flag, Tsyntax::TargumentType type, const TcommandValue& value);
    void take(const Tsyntax& syntax, const TcommandTokens& tokens);
    template <class T> const T& argument(const char* shortName, unsigned index, unsigned use) const;

    std::vector<Tuse> fUses;
    std::vector<Tstring> fObjects;
    bool fEdit = false;
    bool fQuery = false;
    bool fAllFlags = false;
};
