#pragma once

/** Something that can be dimmed: shown, but not to be used. */
class Tdimmable
{
public:
    virtual ~Tdimmable();

    virtual void dim();
    virtual void undim();
    bool isDimmed() const { return fDimmed; }

private:
    bool fDimmed = false;
};
