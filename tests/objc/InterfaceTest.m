/* The interface as the runtime knows it: exactly these selectors, types and instance variables. */
#import "Host.h"

#include <objc/runtime.h>
#include <stdlib.h>
#include <string.h>

#include "wenlolib/version.h"

typedef struct Named {
  const char *selector, *types;
} Named;

/* Flags are C, one unsigned byte; so is BOOL in this runtime. 32-bit words are I and i. */
static const Named recordClassMethods[] = {
    {"writeAppInfoWithContents:name:option:", "C@:@@I"},
    {"writePrinterLogInfoWithContents:name:option:otherInfo:", "C@:@@I@"},
    {"isSupported:", "C@:I"},
    {"isSupportedPlm:", "C@:I"},
    {"createTask:args:wait:", "i@:@@C"},
    {NULL, NULL}};

static const Named recordMethods[] = {{"init", "@@:"},
                                      {"initWithContents:", "@@:@"},
                                      {"initWithContents:name:", "@@:@@"},
                                      {"initWithContents:name:option:", "@@:@@I"},
                                      {"dealloc", "v@:"},
                                      {"setContents:", "v@:@"},
                                      {"setApplicationName:", "v@:@"},
                                      {"contents", "@@:"},
                                      {"applicationName", "@@:"},
                                      {"serOtherInfo:", "v@:@"},
                                      {"setFileType:", "v@:I"},
                                      {"fileType", "I@:"},
                                      {"writeAppInfo", "C@:"},
                                      {"WENLOLIBCreateXMLDocument", "C@:"},
                                      {"getCliantVersion", "@@:"},
                                      {"getCliantVersionforALM", "@@:"},
                                      {"getOSVersion", "@@:"},
                                      {"getLocale", "@@:"},
                                      {"getWENLOLIBId", "@@:"},
                                      {"getDevId", "@@:"},
                                      {"getSerialNum", "@@:"},
                                      {"getRomVersion", "@@:"},
                                      {"isNewTagTypePrinter", "C@:"},
                                      {NULL, NULL}};

static const Named toolkitMethods[] = {
    {"systemVersion", "@@:"},
    {"systemVersionNum", "i@:"},
    {"systemBugFixVersion", "i@:"},
    {"supportUpperOSVersion", "i@:"},
    {"osVersion", "@@:"},
    {"compareSystemVersionNumber:minor:otherMajor:otherMinor:", "q@:iiii"},
    {"systemArchitecture", "i@:"},
    {"groupIdentifier", "@@:"},
    {"groupContainerDirPath", "@@:"},
    {"appSupportDirPath", "@@:"},
    {"prefDirPath", "@@:"},
    {"cacheDirPath", "@@:"},
    {"pliDirPath:", "@@:C"},
    {"almDirPath", "@@:"},
    {"confDirPath", "@@:"},
    {"WENLOLIBDirPath:", "@@:C"},
    {"printerListPath", "@@:"},
    {"surveyInfoPath", "@@:"},
    {"printerListDictionary", "@@:"},
    {"surveyInfoDictionary", "@@:"},
    {"createDir:", "C@:@"},
    {"calendarFormatString:isNeedDay:", "@@:@C"},
    {"calendarWithTimeZoneFormatString:", "@@:@"},
    {"dateFormatWithHourMinSec:", "@@:@"},
    {"replaceString:before:after:", "@@:@@@"},
    {"convertStrToHeaderStr:", "@@:@"},
    {"convertVersionStrToNum:", "i@:@"},
    {"convertVersionNumToStr:", "@@:i"},
    {"convertVersionNumToBiasStr:", "@@:i"},
    {"convertVersionStrToBiasStr:", "@@:@"},
    {"convertBiasVersionStrToVerStr:", "@@:@"},
    {"moduleVersion", "i@:"},
    {"moduleVersionFromBundle", "i@:"},
    {"getandcompLocalSupportVersion:", "i@:i"},
    {NULL, NULL}};

static const Named recordVariables[] = {{"_xmlContents", "@\"NSString\""},
                                        {"_applicationName", "@\"NSString\""},
                                        {"_options", "I"},
                                        {"_fileType", "I"},
                                        {"_pathToPrefFile", "@\"NSString\""},
                                        {"_prefDictionary", "@\"NSDictionary\""},
                                        {"_xmlDocment", "@\"NSData\""},
                                        {"_otherInfoDict", "@\"NSDictionary\""},
                                        {"_libUUID", "@\"NSString\""},
                                        {NULL, NULL}};

/* Without the offsets of the arguments in the frame, which differ between machines. */
static NSString* typesOf(Method method) {
  NSMutableString* types = [NSMutableString string];
  for (const char* type = method_getTypeEncoding(method); *type != '\0'; ++type) {
    if (strchr("0123456789", *type) == NULL) [types appendFormat:@"%c", *type];
  }
  return types;
}

/* GCC encodes the same 64-bit word as l or as q. */
static NSString* word(NSString* types) {
  return [types stringByReplacingOccurrencesOfString:@"l" withString:@"q"];
}

static void checkMethods(Class class, const Named* expected) {
  unsigned int found = 0, count = 0;
  for (; expected->selector != NULL; ++expected, ++count) {
    Method method = class_getInstanceMethod(class, sel_registerName(expected->selector));
    checked(method != NULL, expected->selector, __FILE__, __LINE__);
    if (method == NULL) continue;
    checkedEqual(word(typesOf(method)), [NSString stringWithUTF8String:expected->types],
                 expected -> selector, __FILE__, __LINE__);
  }
  free(class_copyMethodList(class, &found));
  CHECK(found == count);
}

static void recordHasItsSelectorsAndNoOthers(void) {
  checkMethods(object_getClass(recordClass), recordClassMethods);
  checkMethods(recordClass, recordMethods);
}

static void toolkitHasItsSelectorsAndNoOthers(void) {
  checkMethods(object_getClass(toolkitClass), toolkitMethods);
  unsigned int found = 0;
  free(class_copyMethodList(toolkitClass, &found));
  CHECK(found == 0);
}

static void recordHasItsNineFieldsInOrder(void) {
  unsigned int found = 0, i = 0;
  Ivar* variables = class_copyIvarList(recordClass, &found);
  for (const Named* expected = recordVariables; expected->selector != NULL; ++expected, ++i) {
    if (i >= found) break;
    CHECK(strcmp(ivar_getName(variables[i]), expected->selector) == 0);
    CHECK(strcmp(ivar_getTypeEncoding(variables[i]), expected->types) == 0);
  }
  CHECK(found == 9 && i == 9);
  free(variables);
}

static void bothDeriveFromTheRootClass(void) {
  CHECK(class_getSuperclass(recordClass) == [NSObject class]);
  CHECK(class_getSuperclass(toolkitClass) == [NSObject class]);
}

static void bundleKnowsItsPrincipalClassAndVersion(void) {
  CHECK([bundle principalClass] == recordClass);
  CHECK_EQUAL([[bundle infoDictionary] objectForKey:@"CFBundleShortVersionString"],
              [NSString stringWithUTF8String:WENLOLIB_VERSION]);
  CHECK([NSBundle bundleForClass:recordClass] == bundle);
}

const Case interfaceCases[] = {
    {"Interface.RecordHasItsSelectorsAndNoOthers", recordHasItsSelectorsAndNoOthers},
    {"Interface.ToolkitHasItsSelectorsAndNoOthers", toolkitHasItsSelectorsAndNoOthers},
    {"Interface.RecordHasItsNineFieldsInOrder", recordHasItsNineFieldsInOrder},
    {"Interface.BothDeriveFromTheRootClass", bothDeriveFromTheRootClass},
    {"Interface.BundleKnowsItsPrincipalClassAndVersion", bundleKnowsItsPrincipalClassAndVersion},
    {NULL, NULL}};
