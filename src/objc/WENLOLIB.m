#import "wenlolib/objc/WENLOLIB.h"

#import "objc/Private.h"

/* Only for the library's own developers: see base/Trace.h. */
static void traceEntry(NSString* name) {
#ifdef WENLOLIB_TRACE_POINTS
  Plain text = textFrom(name);
  coreTraceEntry(text);
  plainFree(&text);
#else
  (void)name;
#endif
}

@implementation WENLOLIB

/* What a host's subclass raises is caught here too; the result is then NO. */
+ (BOOL)writeAppInfoWithContents:(NSString*)contents
                            name:(NSString*)name
                          option:(unsigned int)option {
  volatile BOOL written = NO;
  traceEntry(name);
  @try {
    WENLOLIB* record;
    if (![self isSupported:option]) return NO;
    if (contents == nil || name == nil || !isRoomFor(0)) return NO;
    record = [[[self alloc] initWithContents:contents name:name option:option] autorelease];
    [record setFileType:2];
    written = [record writeAppInfo];
  } @catch (...) {
    written = NO;
  }
  return written;
}

+ (BOOL)writePrinterLogInfoWithContents:(NSString*)contents
                                   name:(NSString*)name
                                 option:(unsigned int)option
                              otherInfo:(NSDictionary*)otherInfo {
  volatile BOOL written = NO;
  @try {
    WENLOLIB* record;
    if (![self isSupportedPlm:option]) return NO;
    if (contents == nil || name == nil || !isRoomFor(0)) return NO;
    record = [[[self alloc] initWithContents:contents name:name option:option] autorelease];
    [record setFileType:1];
    if (otherInfo != nil) [record serOtherInfo:otherInfo];
    written = [record writeAppInfo];
  } @catch (...) {
    written = NO;
  }
  return written;
}

+ (BOOL)isSupported:(unsigned int)option {
  return coreIsSupported(option) != 0;
}

@end

/* Replaces `held` with the record's own copy of `string`, unless that is the very same object. */
static void replaceText(NSString** held, NSString* string) {
  NSString* taken;
  if (string == *held) return;
  taken = [stringTaking(textFrom(string)) retain];
  [*held release];
  *held = taken;
}

/* Stands for an identity that there was no memory to keep. It takes no memory itself, and it is not
 * a dictionary, so no document is made without the identity. */
static NSString* const lostIdentity = @"lost for lack of memory";

/* Never nil. */
static NSString* textOrEmpty(Plain text) {
  NSString* string = stringTaking(text);
  return string != nil ? string : @"";
}

/* What a probe finds in the printer's identity. */
static NSString* identityText(NSDictionary* otherInfo, Plain (*probe)(Plain)) {
  Plain identity = dictionaryFrom(otherInfo);
  NSString* text = textOrEmpty(probe(identity));
  plainFree(&identity);
  return text;
}

@implementation WENLOLIB (WENLOLIBMethods)

/* Releases everything that the record holds. */
static void clear(WENLOLIB* self) {
  [self->_applicationName release];
  [self->_xmlContents release];
  [self->_pathToPrefFile release];
  [self->_prefDictionary release];
  [self->_xmlDocment release];
  [self->_libUUID release];
  [self->_otherInfoDict release];
  self->_applicationName = self->_xmlContents = self->_pathToPrefFile = self->_libUUID = nil;
  self->_prefDictionary = self->_otherInfoDict = nil;
  self->_xmlDocment = nil;
}

- (id)init {
  self = [super init];
  if (self != nil) {
    clear(self);
    _options = 0;
    _fileType = 1;
  }
  return self;
}

- (id)initWithContents:(NSString*)contents {
  return [self initWithContents:contents name:nil option:0];
}

- (id)initWithContents:(NSString*)contents name:(NSString*)name {
  return [self initWithContents:contents name:name option:0];
}

- (id)initWithContents:(NSString*)contents name:(NSString*)name option:(unsigned int)option {
  id volatile record = nil;
  @try {
    self = [self init];
    if (self != nil) {
      [self setContents:contents];
      [self setApplicationName:name];
      _options = option;
    }
    record = self;
  } @catch (...) {
    record = nil; /* a subclass has raised */
  }
  return record;
}

- (void)dealloc {
  clear(self);
  [super dealloc];
}

- (void)setContents:(NSString*)contents {
  replaceText(&_xmlContents, contents);
}

- (void)setApplicationName:(NSString*)name {
  replaceText(&_applicationName, name);
}

- (NSString*)contents {
  return stillGood(_xmlContents);
}

- (NSString*)applicationName {
  return stillGood(_applicationName);
}

- (void)setFileType:(unsigned int)fileType {
  if (fileType == 1 || fileType == 2) _fileType = fileType;
}

- (unsigned int)fileType {
  return _fileType;
}

- (void)serOtherInfo:(NSDictionary*)otherInfo {
  Plain read = dictionaryFrom(otherInfo);
  const BOOL keepsWhatItHad = read.kind == plainNothing;
  id taken = dictionaryTaking(read);
  if (keepsWhatItHad) return;
  if (taken == nil) taken = lostIdentity;
  [taken retain];
  [_otherInfoDict release];
  _otherInfoDict = taken;
}

static CoreRecord fieldsOf(WENLOLIB* self) {
  CoreRecord fields = {.options = self->_options, .fileType = self->_fileType};
  fields.contents = textFrom(self->_xmlContents);
  fields.applicationName = textFrom(self->_applicationName);
  fields.otherInfo = dictionaryFrom(self->_otherInfoDict);
  fields.identifier = textFrom(self->_libUUID);
  fields.document = dataFrom(self->_xmlDocment);
  return fields;
}

/* Whether all fields have arrived: if one was lost for lack of memory, the document would say
 * something else. A record of an unknown type has no document either. */
static BOOL isWhole(WENLOLIB* self, const CoreRecord* fields) {
  return (fields->contents.kind == plainText || self->_xmlContents == nil) &&
         (fields->otherInfo.kind == plainDictionary || self->_otherInfoDict == nil) &&
         (fields->identifier.kind == plainText || self->_libUUID == nil) &&
         (fields->document.kind == plainData || self->_xmlDocment == nil) &&
         (self->_fileType == 1 || self->_fileType == 2);
}

/* Takes over what the operation left in the fields. NO if there is no memory for its document; the
 * record then keeps the one it had. */
static BOOL takeBack(WENLOLIB* self, CoreRecord* fields) {
  const BOOL hasDocument = fields->document.kind == plainData;
  NSData* document = dataTaking(fields->document);
  fields->document = (Plain){.kind = plainNothing};
  if (self->_libUUID == nil) {
    self->_libUUID = [stringTaking(fields->identifier) retain];
    fields->identifier = (Plain){.kind = plainNothing};
  }
  if (hasDocument && document == nil) return NO;
  [document retain];
  [self->_xmlDocment release];
  self->_xmlDocment = document;
  return YES;
}

/* Runs `operation` on the record's fields. */
static BOOL performed(WENLOLIB* self, uint8_t (*operation)(CoreRecord*)) {
  CoreRecord fields = fieldsOf(self);
  BOOL answer = NO;
  if (isWhole(self, &fields)) {
    answer = operation(&fields) != 0;
    answer = takeBack(self, &fields) && answer;
  }
  plainFree(&fields.contents);
  plainFree(&fields.applicationName);
  plainFree(&fields.otherInfo);
  plainFree(&fields.identifier);
  plainFree(&fields.document);
  return answer;
}

- (BOOL)WENLOLIBCreateXMLDocument {
  return performed(self, coreCreateXMLDocument);
}

- (BOOL)writeAppInfo {
  return performed(self, coreWriteAppInfo);
}

- (NSString*)getCliantVersion {
  return textOrEmpty(coreCliantVersion());
}

- (NSString*)getCliantVersionforALM {
  return textOrEmpty(coreCliantVersionforALM());
}

- (NSString*)getOSVersion {
  return textOrEmpty(coreMarkedOSVersion());
}

- (NSString*)getLocale {
  return textOrEmpty(coreLocale(_options));
}

- (NSString*)getWENLOLIBId {
  NSString* identifier;
  if (_libUUID == nil) _libUUID = [stringTaking(coreIdentifier()) retain];
  identifier = stillGood(_libUUID);
  return identifier != nil ? identifier : @"";
}

- (NSString*)getDevId {
  return identityText(_otherInfoDict, coreDevId);
}

- (NSString*)getSerialNum {
  return identityText(_otherInfoDict, coreSerialNum);
}

- (NSString*)getRomVersion {
  return identityText(_otherInfoDict, coreRomVersion);
}

- (BOOL)isNewTagTypePrinter {
  Plain identity = dictionaryFrom(_otherInfoDict);
  const BOOL newer = coreIsNewTagTypePrinter(identity) != 0;
  plainFree(&identity);
  return newer;
}

+ (BOOL)isSupportedPlm:(unsigned int)option {
  return coreIsSupportedPlm(option) != 0;
}

+ (int)createTask:(NSString*)path args:(NSArray*)args wait:(unsigned char)wait {
  Plain executable = textFrom(path);
  Plain arguments = arrayFrom(args);
  int status = 0;
  if (args == nil || arguments.kind == plainArray) {
    status = coreCreateTask(executable, arguments, wait);
  }
  plainFree(&executable);
  plainFree(&arguments);
  return status;
}

@end
