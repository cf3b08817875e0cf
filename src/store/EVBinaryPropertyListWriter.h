#pragma once

#include "store/EVPropertyList.h"

#include <QByteArray>

// Writes a property list in the binary form ("bplist00"), objects in table order, offsets and
// references as narrow as their largest value allows unless wider ones are asked for.
// References are written as they are, also those that point outside the table.
class EVBinaryPropertyListWriter
{
public:
    static QByteArray write(const EVPropertyList &list, int minimumOffsetSize = 1,
                            int minimumReferenceSize = 1);
};
