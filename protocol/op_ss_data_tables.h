// The fifteen tables of the operation dictionary, grouped by subject. Each is a
// global null-terminated array of entries created once by static initialisation
// and never freed; load them into a COpSsDataMap with FillMap. Read-only.
#pragma once

#include "protocol/c_op_ss_data.h"

class COpSsDataMap;

extern COpSsData* analogAudioSsData[];
extern COpSsData* audioPidLockSsData[];
extern COpSsData* audioSrvSsData[];
extern COpSsData* avSsConfigSsData[];
extern COpSsData* compositeSsData[];
extern COpSsData* stbAvSubsystemSsData[];
extern COpSsData* overlaySsData[];
extern COpSsData* pidLockSsData[];
extern COpSsData* selectedAudioSsData[];
extern COpSsData* selectedOtherSsData[];
extern COpSsData* selectedServiceSsData[];
extern COpSsData* serviceLockSsData[];
extern COpSsData* serviceSelectionSsData[];
extern COpSsData* videoOutputSsData[];
extern COpSsData* videoSsData[];

// Fills map with every table, in the order the daemon loads them
// (selectedAudioSsData goes in twice, as it always has: a second fill changes
// nothing). The one list of the tables for the daemon, its tools and tests.
void FillDictionary(COpSsDataMap& map);
