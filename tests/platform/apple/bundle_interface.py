"""What the plug-in for macOS has to offer, and what it may ask for.

Types are written as the runtime encodes them, results first, the receiver and the selector left
out: @ an object, I and i 32 bits without and with a sign, q a signed machine word, C one byte. Z
stands for BOOL, which Intel and Arm encode differently."""

CLASSES = {
    "WENLOLIB": {
        "+": {
            "writeAppInfoWithContents:name:option:": "Z@@I",
            "writePrinterLogInfoWithContents:name:option:otherInfo:": "Z@@I@",
            "isSupported:": "ZI",
            "isSupportedPlm:": "ZI",
            "createTask:args:wait:": "i@@C",
        },
        "-": {
            "init": "@",
            "initWithContents:": "@@",
            "initWithContents:name:": "@@@",
            "initWithContents:name:option:": "@@@I",
            "setContents:": "v@",
            "setApplicationName:": "v@",
            "contents": "@",
            "applicationName": "@",
            "setFileType:": "vI",
            "fileType": "I",
            "serOtherInfo:": "v@",
            "WENLOLIBCreateXMLDocument": "Z",
            "writeAppInfo": "Z",
            "getCliantVersion": "@",
            "getCliantVersionforALM": "@",
            "getOSVersion": "@",
            "getLocale": "@",
            "getWENLOLIBId": "@",
            "getDevId": "@",
            "getSerialNum": "@",
            "getRomVersion": "@",
            "isNewTagTypePrinter": "Z",
        },
        "variables": [
            ("_xmlContents", '@"NSString"'),
            ("_applicationName", '@"NSString"'),
            ("_options", "I"),
            ("_fileType", "I"),
            ("_pathToPrefFile", '@"NSString"'),
            ("_prefDictionary", '@"NSDictionary"'),
            ("_xmlDocment", '@"NSData"'),
            ("_otherInfoDict", '@"NSDictionary"'),
            ("_libUUID", '@"NSString"'),
        ],
    },
    "CommonTooWenlolib": {
        "+": {
            "systemVersion": "@",
            "systemVersionNum": "i",
            "systemBugFixVersion": "i",
            "supportUpperOSVersion": "i",
            "osVersion": "@",
            "compareSystemVersionNumber:minor:otherMajor:otherMinor:": "qiiii",
            "systemArchitecture": "i",
            "groupIdentifier": "@",
            "groupContainerDirPath": "@",
            "appSupportDirPath": "@",
            "prefDirPath": "@",
            "cacheDirPath": "@",
            "pliDirPath:": "@C",
            "almDirPath": "@",
            "confDirPath": "@",
            "WENLOLIBDirPath:": "@C",
            "printerListPath": "@",
            "surveyInfoPath": "@",
            "printerListDictionary": "@",
            "surveyInfoDictionary": "@",
            "createDir:": "Z@",
            "calendarFormatString:isNeedDay:": "@@C",
            "calendarWithTimeZoneFormatString:": "@@",
            "dateFormatWithHourMinSec:": "@@",
            "replaceString:before:after:": "@@@@",
            "convertVersionStrToNum:": "i@",
            "convertVersionNumToStr:": "@i",
            "convertVersionNumToBiasStr:": "@i",
            "convertVersionStrToBiasStr:": "@@",
            "convertBiasVersionStrToVerStr:": "@@",
            "moduleVersion": "i",
            "moduleVersionFromBundle": "i",
            "getandcompLocalSupportVersion:": "ii",
        },
        "-": {},
        "variables": [],
    },
}

# Methods that every class may have for itself.
OWN_METHODS = {"dealloc": "v"}

FRAMEWORK = "/System/Library/Frameworks/{0}.framework/Versions/{1}/{0}"
CORE_FOUNDATION = FRAMEWORK.format("CoreFoundation", "A")
CORE_SERVICES = FRAMEWORK.format("CoreServices", "A")
SECURITY = FRAMEWORK.format("Security", "A")
FOUNDATION = FRAMEWORK.format("Foundation", "C")
OBJC = "/usr/lib/libobjc.A.dylib"
SYSTEM = "/usr/lib/libSystem.B.dylib"

# A framework whose calls are out of date is a weak one: the plug-in loads without it.
LIBRARIES = {
    CORE_FOUNDATION: False, FOUNDATION: False, OBJC: False, SYSTEM: False,
    CORE_SERVICES: True, SECURITY: True,
}

IMPORTED = {
    CORE_FOUNDATION: """
        CFAbsoluteTimeGetCurrent CFArrayAppendValue CFArrayCreateMutable CFArrayGetCount
        CFArrayGetTypeID CFArrayGetValueAtIndex CFBooleanGetTypeID CFBooleanGetValue CFBundleCreate
        CFBundleGetInfoDictionary CFCalendarCreateWithIdentifier CFCalendarDecomposeAbsoluteTime
        CFCalendarSetTimeZone CFDataCreate CFDataGetBytePtr CFDataGetLength CFDataGetTypeID
        CFDateCreate CFDateGetAbsoluteTime CFDateGetTypeID CFDictionaryCreateMutable
        CFDictionaryGetCount CFDictionaryGetKeysAndValues CFDictionaryGetTypeID
        CFDictionarySetValue CFGetTypeID CFNumberCreate CFNumberGetTypeID CFNumberGetValue
        CFNumberIsFloatType CFPreferencesCopyAppValue CFPropertyListCreateData
        CFPropertyListCreateWithData CFRelease CFRetain CFStringCreateWithBytes CFStringGetBytes
        CFStringGetLength CFStringGetTypeID CFTimeZoneCopyDefault CFTimeZoneGetSecondsFromGMT
        CFURLCreateFromFileSystemRepresentation CFUUIDCreate CFUUIDCreateString
        kCFAbsoluteTimeIntervalSince1970 kCFBooleanFalse kCFBooleanTrue kCFGregorianCalendar
        kCFPreferencesCurrentApplication kCFTypeArrayCallBacks kCFTypeDictionaryKeyCallBacks
        kCFTypeDictionaryValueCallBacks __CFConstantStringClassReference
        OBJC_CLASS_$_NSArray OBJC_CLASS_$_NSData OBJC_CLASS_$_NSDate OBJC_CLASS_$_NSDictionary
        OBJC_CLASS_$_NSException OBJC_CLASS_$_NSMutableArray OBJC_CLASS_$_NSMutableDictionary""",
    FOUNDATION: """
        NSHomeDirectory NSRangeException NSSearchPathForDirectoriesInDomains NSUserName
        OBJC_CLASS_$_NSAutoreleasePool OBJC_CLASS_$_NSFileManager OBJC_CLASS_$_NSNumber
        OBJC_CLASS_$_NSString OBJC_CLASS_$_NSUserDefaults OBJC_CLASS_$_NSXMLDocument""",
    CORE_SERVICES: "Gestalt",
    SECURITY: """
        SecEncryptTransformCreate SecKeyCreateFromData SecTransformExecute SecTransformSetAttribute
        kSecAttrKeyTypeRC4 kSecAttrType kSecTransformInputAttributeName""",
}

# From the system's C library whatever it has; but these came after the oldest system that the build
# for Intel is for, and so have to be weak there.
LATE_CALLS = {"_openat", "_renameat", "_renameatx_np", "_linkat", "_unlinkat", "_fstatat$INODE64"}
