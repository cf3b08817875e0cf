#pragma once

#include "controls/EVBeep.h"

#include <memory>

// Counts the beeps the controls make instead of sounding them, for as long as it lives.
class BeepCounter
{
public:
    BeepCounter()
    {
        EVBeep::setHandler([count = m_count] { ++*count; });
    }
    ~BeepCounter() { EVBeep::setHandler({}); }
    BeepCounter(const BeepCounter &) = delete;
    BeepCounter &operator=(const BeepCounter &) = delete;

    int count() const { return *m_count; }

private:
    std::shared_ptr<int> m_count = std::make_shared<int>(0);
};
