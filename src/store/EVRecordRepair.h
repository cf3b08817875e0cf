#pragma once

#include "store/EVStoreFile.h"

class EVRepairLog;

// Puts right what a damaged or hand-edited store file gives that no single field can judge:
// identifiers that are not UUIDs or that another record already has (every widget needs its
// own window and every picture its own file), and style indexes that point past the widget's
// custom styles. Repaired records are saved with the next save. Frames are judged where they
// are read (EVWidgetEntry::frame); those that cannot be shown are only counted here.
namespace EVRecordRepair {

void repair(const EVStoreFile::Records &records, EVRepairLog *log);

} // namespace EVRecordRepair
