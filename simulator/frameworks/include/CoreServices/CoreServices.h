// The part of the Apple event functions that this program calls: who may tell an application
// something. No event is sent.
#pragma once

#include <cstdint>

#include "CoreFoundation/CoreFoundation.h"

extern "C" {

using OSErr = std::int16_t;
using OSStatus = std::int32_t;
using DescType = std::uint32_t;
using AEEventClass = std::uint32_t;
using AEEventID = std::uint32_t;
using AEDataStorage = struct OpaqueAEDataStorageType**;

// As on the platform, members lie on even addresses.
#pragma pack(push, 2)
struct AEDesc {
  DescType descriptorType;
  AEDataStorage dataHandle;
};
#pragma pack(pop)
using AEAddressDesc = AEDesc;

enum : DescType {
  typeApplicationBundleID = 0x62756E64,  // 'bund'
  typeNull = 0x6E756C6C,                 // 'null'
  typeWildCard = 0x2A2A2A2A,             // '****'
};
enum : OSStatus {
  noErr = 0,
  procNotFound = -600,
  errAEEventNotPermitted = -1743,
  errAEEventWouldRequireUserConsent = -1744,
};

// Copies the data. Only bundle identifiers are known.
OSErr AECreateDesc(DescType type, const void* data, long size, AEDesc* result);
OSErr AEDisposeDesc(AEDesc* descriptor);

// Whether this process may send events to an application that runs. Known for all events at once
// (wild cards) and without asking the person at the machine.
OSStatus AEDeterminePermissionToAutomateTarget(const AEAddressDesc* target,
                                               AEEventClass eventClass, AEEventID event,
                                               Boolean askUserIfNeeded);

}  // extern "C"
