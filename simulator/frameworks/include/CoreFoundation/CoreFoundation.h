// The part of CoreFoundation that this program calls. Stricter than the platform about ownership:
// every misuse of an object ends the program with one line that names the object and the misuse
// (see simulator/frameworks/ledger.h).
#pragma once

extern "C" {

using Boolean = unsigned char;
using UniChar = unsigned short;
using UniCharCount = unsigned long;
using CFIndex = long;
using CFTypeID = unsigned long;

using CFTypeRef = const void*;
using CFAllocatorRef = const struct __CFAllocator*;
using CFStringRef = const struct __CFString*;
using CFArrayRef = const struct __CFArray*;
using CFDictionaryRef = const struct __CFDictionary*;
using CFNumberRef = const struct __CFNumber*;
using CFBooleanRef = const struct __CFBoolean*;
using CFURLRef = const struct __CFURL*;
using CFErrorRef = struct __CFError*;

// The only allocator there is.
extern const CFAllocatorRef kCFAllocatorDefault;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
Boolean CFEqual(CFTypeRef one, CFTypeRef other);
CFTypeID CFGetTypeID(CFTypeRef object);

struct CFRange {
  CFIndex location;
  CFIndex length;
};
inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
  return {location, length};
}

CFTypeID CFStringGetTypeID();
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* characters,
                                         CFIndex count);
CFIndex CFStringGetLength(CFStringRef string);
void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer);

// Only the callbacks that retain the members are known.
struct CFArrayCallBacks;
extern const CFArrayCallBacks kCFTypeArrayCallBacks;

CFTypeID CFArrayGetTypeID();
CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks);
CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);

CFTypeID CFDictionaryGetTypeID();
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);

enum CFNumberType : CFIndex { kCFNumberSInt32Type = 3 };

CFTypeID CFNumberGetTypeID();
// Whether the number could be converted without loss.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* out);

extern const CFBooleanRef kCFBooleanTrue;
CFTypeID CFBooleanGetTypeID();
Boolean CFBooleanGetValue(CFBooleanRef boolean);

// Stands for nothing where something has to be, as among the members of an array.
CFTypeID CFNullGetTypeID();

enum CFURLPathStyle : CFIndex { kCFURLPOSIXPathStyle = 0 };

CFTypeID CFURLGetTypeID();
CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef text, CFURLRef base);
CFURLRef CFURLCreateFilePathURL(CFAllocatorRef allocator, CFURLRef url, CFErrorRef* error);
CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style);
CFStringRef CFURLCopyScheme(CFURLRef url);

}  // extern "C"
