"""What the plug-in for macOS must offer, and what it may use.

Types are encoded as in the runtime: the result first, without the receiver and the selector. @ is
an object, I and i are 32 bits without and with a sign, q is a signed machine word, C is one byte. Z
stands for BOOL, which Intel and Arm encode differently."""
import pathlib
import re

STUBS = pathlib.Path(__file__).resolve().parents[2] / "apple_stubs/frameworks"

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
            "convertStrToHeaderStr:": "@@",
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

# Methods that any class may have on its own.
OWN_METHODS = {"dealloc": "v"}

# The functions that look for a handler, in C++ and in Objective-C, and functions that catch. A host
# calls these or those that call them.
CXX_HANDLER, OBJC_HANDLER = "___gxx_personality_v0", "___objc_personality_v0"
CATCHING = {
    **dict.fromkeys(["_WENLOLIB_writeAppInfoWithContents",
                     "_WENLOLIB_writePrinterLogInfoWithContents", "_coreCreateTask",
                     "_coreCreateDir", "_coreReplaceString", "_coreLocale"], CXX_HANDLER),
    **dict.fromkeys(["_newPool", "_drainPool", "_stillGood", "_saysNoMemory", "_succeedsGuarded"],
                    OBJC_HANDLER),
}


def link_stub(name, architecture=""):
    """A library's path, and the symbols that may be used from it: those in its link stub."""
    text = (STUBS / name).read_text()
    path, = re.findall(r"install-name: '(.*)'", text)
    names = set()
    for targets, section in re.findall(r"- targets: \[(.*?)\]((?:\s+[\w-]+: \[[^]]*\])+)", text):
        if f"{architecture}-macos" not in targets:
            continue
        for key, prefix in (("symbols", ""), ("objc-classes", "_OBJC_CLASS_$_"),
                            ("objc-eh-types", "_OBJC_EHTYPE_$_")):
            for listed in re.findall(rf"{key}: \[([^]]*)\]", section):
                names |= {prefix + each for each in re.findall(r"[^\s,]+", listed)}
    return path, names


# A framework is linked weakly if its calls are out of date: the plug-in loads without it.
STRONG = ["CoreFoundation.framework/CoreFoundation.tbd", "Foundation.framework/Foundation.tbd",
          "libexpat.tbd"]
WEAK = ["CoreServices.framework/CoreServices.tbd", "Security.framework/Security.tbd"]

IMPORTED = {architecture: dict(link_stub(name, architecture) for name in STRONG + WEAK)
            for architecture in ("x86_64", "arm64")}

SYSTEM = "/usr/lib/libSystem.B.dylib"
OBJC, _ = link_stub("libobjc.tbd")
LIBRARIES = {
    SYSTEM: False, OBJC: False,
    **{link_stub(name)[0]: name in WEAK for name in STRONG + WEAK},
}

# Where the plug-in finds each class, whatever the stubs say. NSObject came to the Objective-C
# library with OS 10.8: what is built for older systems looks for it in Core Foundation.
CORE_FOUNDATION, FOUNDATION = (link_stub(name)[0] for name in STRONG[:2])
CLASS_HOMES = {
    **dict.fromkeys(["NSArray", "NSData", "NSDate", "NSDictionary", "NSException", "NSMutableArray",
                     "NSMutableDictionary", "NSTimeZone", "NSUserDefaults"], CORE_FOUNDATION),
    **dict.fromkeys(["NSAutoreleasePool", "NSFileManager", "NSNumber", "NSString",
                     "NSXMLDocument"], FOUNDATION),
}
NSOBJECT_HOME = {"x86_64": CORE_FOUNDATION, "arm64": OBJC}

# Everything in the system's C library may be used. But the oldest system that the build for Intel
# is for does not have these calls, so they must be weak there.
LATE_CALLS = {"_openat", "_renameat", "_renameatx_np", "_linkat", "_unlinkat", "_fstatat$INODE64"}
