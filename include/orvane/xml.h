/**
 * @file xml.h
 * @brief The `orvane` element of the middleware's XML configuration: reading, writing, starting.
 *
 * A host reads the element into an options record and starts the logger from it:
 *
 *     DDS_XMLExtensionClass* orvane =
 *         QEL_KX_XMLConfig_createXMLExtensionClass(DDS_XMLParser_report_error);
 *     DDS_XMLParser* parser = DDS_XMLParser_new();
 *     DDS_XMLParser_register_extension_class(parser, orvane);
 *     DDS_XMLParser_parse_file(parser, "application.xml");
 *     QEL_KX_Options* options = QEL_KX_XMLConfig_getKXOptions(
 *         QEL_KX_XMLConfig_getXMLConfigFromXMLRoot(DDS_XMLParser_get_root(parser)));
 *     QEL_KX_XMLConfig_startWithXMLConfiguration(participant, options, "pump");
 *     …
 *     QEL_KX_Orvane_finalizeInstance();
 *     DDS_XMLParser_delete(parser);
 *     QEL_KX_XMLConfig_destroyXMLExtensionClass(orvane);
 *
 * The options belong to the parser's tree, and the logger goes on reading them: the tree must live
 * until the logger has been finalised.
 *
 * An error in a file goes to the host's function with its line, and the context's error indicator
 * is set. Reading goes on, and the host decides whether it uses a file with errors. Failures that
 * have nothing to do with a file are lines on standard output.
 */
#ifndef ORVANE_XML_H
#define ORVANE_XML_H

#include "orvane/core.h"
#include "orvane/export.h"
#include "pexa/xml.h"

PEXA_BEGIN_C

/**
 * @name Element
 * An object of the middleware's tree for each `orvane` element.
 * @{
 */

/** User data of the extension class. */
typedef struct XMLConfigListener {
    /** Receives the errors of a file; not NULL. */
    DDS_XMLParseErrorFunction parseErrorFunction;
} XMLConfigListener;

/** The child of an `orvane` element that is open: the values of
 *  @ref QEL_KX_XMLConfig::currentElement. */
typedef enum QEL_KX_XMLConfigElement {
    QEL_KX_XML_ELEMENT_NONE = 0,
    QEL_KX_XML_ELEMENT_FILTER_LEVEL = 1,
    QEL_KX_XML_ELEMENT_ENABLED = 2,
    QEL_KX_XML_ELEMENT_THREAD = 3,
    QEL_KX_XML_ELEMENT_MASK = 4,
    QEL_KX_XML_ELEMENT_PRIORITY = 5,
    QEL_KX_XML_ELEMENT_STACK_SIZE = 6,
    QEL_KX_XML_ELEMENT_CPU_LIST = 7,
    QEL_KX_XML_ELEMENT_CPU_ROTATION = 8,
    QEL_KX_XML_ELEMENT_QUEUE_SIZE = 9,
    QEL_KX_XML_ELEMENT_ECHO_TO_STDOUT = 10,
    QEL_KX_XML_ELEMENT_LOG_INFRASTRUCTURE_MESSAGES = 11
} QEL_KX_XMLConfigElement;

/** One `orvane` element. */
typedef struct QEL_KX_XMLConfig {
    /** The platform's part. It is the first, so a pointer to it is a pointer to the record. */
    DDS_XMLObject object;
    /** The options that the element sets; owned. */
    QEL_KX_Options* options;
    /** The child that is open, a @ref QEL_KX_XMLConfigElement. */
    DDS_UnsignedLong currentElement;
    /** The extension class's; borrowed. */
    XMLConfigListener* listener;
} QEL_KX_XMLConfig;

/** @return a zero-filled record, or NULL after a line that says so. Free it with
 *  QEL_KX_XMLConfig_finalize(). */
ORVANE_API QEL_KX_XMLConfig* QEL_KX_XMLConfig_create(void);
/**
 * Makes the object of an element: default options, but not enabled, because a file that says
 * nothing about it shall start nothing.
 * @param extensionClass a class whose user data is an XMLConfigListener.
 * @param attributes ignored.
 * @return the object, or NULL after a report.
 */
ORVANE_API DDS_XMLObject* QEL_KX_XMLConfig_new(DDS_XMLExtensionClass* extensionClass,
                                               DDS_XMLObject* parentObject,
                                               const char* const* attributes,
                                               DDS_XMLContext* context);
/** The same as QEL_KX_XMLConfig_finalize(). */
ORVANE_API void QEL_KX_XMLConfig_delete(DDS_XMLObject* object);
/** Frees an object with its options, which the logger must no longer use; NULL is ignored. */
ORVANE_API void QEL_KX_XMLConfig_finalize(DDS_XMLObject* object);
/** Notes the child that starts. An unknown child is ignored, and so is a child of `thread` outside
 *  of `thread`. The children of `orvane` count wherever they stand inside it. */
ORVANE_API void QEL_KX_XMLConfig_onStartElement(DDS_XMLObject* object, const char* tagName,
                                                const char* const* attributes,
                                                DDS_XMLContext* context);
/** Stores the value of a child. A refused text is reported. It leaves the option as it was, if the
 *  conversions below do not say otherwise; a truth value becomes false. */
ORVANE_API void QEL_KX_XMLConfig_onEndElement(DDS_XMLObject* object, const char* tagName,
                                              const char* elementText, DDS_XMLContext* context);
/** @return the object's own options, which die with the tree; NULL, after a line that says so, for
 *  NULL. */
ORVANE_API QEL_KX_Options* QEL_KX_XMLConfig_getKXOptions(QEL_KX_XMLConfig* object);
/** The same as QEL_KX_XMLConfig_getKXXMLObjectFromRoot() for a tree whose parser had the extension
 *  class registered, so that its `orvane` objects are this library's. */
ORVANE_API QEL_KX_XMLConfig* QEL_KX_XMLConfig_getXMLConfigFromXMLRoot(DDS_XMLObject* root);
/** @return the first object called `orvane`, in the order of the file: @p node, an object inside
 * it, or an object that follows it; NULL when there is none. */
ORVANE_API DDS_XMLObject* QEL_KX_XMLConfig_getKXXMLObjectFromRoot(DDS_XMLObject* node);
/** @} */

/**
 * @name Conversions
 * From the text of a child to its value. A refusal is reported through @p parseErrorFunction and
 * sets the context's error indicator. Numbers may be followed by other text, which is ignored.
 *
 * Where a range error is tested, it is that of `errno` after the conversion, which the conversion
 * does not clear before: a caller does so.
 * @{
 */

/** What QEL_KX_XMLConfig_getFilterLevelFromString() returns for a text that is no level. */
#define QEL_KX_XML_INVALID_FILTER_LEVEL ((DDS_UnsignedLong)0xFFFFFFFF)

/** @param text a level's name in upper case, or a decimal number of 0 or more.
 *  @return the level, or @ref QEL_KX_XML_INVALID_FILTER_LEVEL. */
ORVANE_API DDS_UnsignedLong QEL_KX_XMLConfig_getFilterLevelFromString(
    const char* text, DDS_XMLContext* context, DDS_XMLParseErrorFunction parseErrorFunction);
/** @param text a number of 1 or more: decimal, after 0x hexadecimal, after 0 octal.
 *  @param out unchanged after a refusal. */
ORVANE_API void QEL_KX_XMLConfig_getQueueSize(DDS_Long* out, const char* text,
                                              DDS_XMLContext* context,
                                              DDS_XMLParseErrorFunction parseErrorFunction);
/** Ends @p text at its first bar. @return the text after the bar; NULL without a bar or a text. */
ORVANE_API char* QEL_KX_XMLConfig_separateFirstElementFromMask(char* text);
/**
 * @param mask becomes the bits of all names up to the first that is unknown.
 * @param text names of bits with bars between them, in any case; nothing but blanks means none.
 */
ORVANE_API void QEL_KX_XMLConfig_getThreadSettingsKindMask(
    DDS_UnsignedLong* mask, const char* text, DDS_XMLContext* context,
    DDS_XMLParseErrorFunction parseErrorFunction);
/** @param text the name of a priority in any case, which always means the platform's default, or a
 *  decimal number. @param priority becomes 0 after a refusal. */
ORVANE_API void QEL_KX_XMLConfig_getThreadPriority(DDS_Long* priority, const char* text,
                                                   DDS_XMLContext* context,
                                                   DDS_XMLParseErrorFunction parseErrorFunction);
/** @param text the default's name in any case, or bytes, 0 or more, written as a queue size.
 *  @param stackSize unchanged after a refusal. */
ORVANE_API void QEL_KX_XMLConfig_getThreadStackSize(DDS_Long* stackSize, const char* text,
                                                    DDS_XMLContext* context,
                                                    DDS_XMLParseErrorFunction parseErrorFunction);
/** @param text the name of a rotation in any case. @param rotation unchanged after a refusal. */
ORVANE_API void QEL_KX_XMLConfig_getThreadCpuRotation(DDS_ThreadSettingsCpuRotationKind* rotation,
                                                      const char* text, DDS_XMLContext* context,
                                                      DDS_XMLParseErrorFunction parseErrorFunction);
/** Appends a CPU's number. @param text 0 or more, written as a queue size; a refused text leaves an
 *  element of value 0 behind. */
ORVANE_API void QEL_KX_XMLConfig_addElementToThreadCpuList(
    DDS_LongSeq* cpuList, const char* text, DDS_XMLContext* context,
    DDS_XMLParseErrorFunction parseErrorFunction);
/** @} */

/**
 * @name Writing
 * @{
 */
/**
 * Writes an element that means the same settings when it is read. While the logger runs, its filter
 * level is written. The element is left unfinished with the error indicator set when there are no
 * options or a setting cannot be written.
 * @param object a QEL_KX_XMLConfig. @param extra ignored.
 */
ORVANE_API void QEL_KX_XMLConfig_save(DDS_XMLObject* object, QELXMLSaveContext* saveContext,
                                      void* extra);
/** Writes thread settings as an element of that name; nothing when they are the defaults. An
 *  unknown rotation leaves the element unfinished with the error indicator set. */
ORVANE_API void QEL_KX_XMLConfig_saveThreadSettings(const char* tagName,
                                                    const DDS_ThreadSettings_t* threadSettings,
                                                    QELXMLSaveContext* saveContext);
/** @} */

/**
 * @name Starting
 * @{
 */
/**
 * Makes the class of `orvane` elements for registration with a parser.
 * @param parseErrorFunction not NULL; DDS_XMLParser_report_error adds errors to the parser's own.
 * @return the class, or NULL after a line that says why. Free it with
 *   QEL_KX_XMLConfig_destroyXMLExtensionClass() once its parsers are deleted.
 */
ORVANE_API DDS_XMLExtensionClass* QEL_KX_XMLConfig_createXMLExtensionClass(
    DDS_XMLParseErrorFunction parseErrorFunction);
/** Frees a class with its listener; NULL is ignored. */
ORVANE_API void QEL_KX_XMLConfig_destroyXMLExtensionClass(DDS_XMLExtensionClass* extensionClass);
/**
 * Creates the logger as the options say, if they enable it and it does not run yet.
 * @param participant the logger's; must outlive it.
 * @param options as QEL_KX_XMLConfig_getKXOptions() gave them. The participant and the application
 *   kind are stored in them, and the logger reads them until it is finalised. After a failed
 *   creation they remain the options of the next attempt: call QEL_KX_Orvane_setOptions(NULL)
 *   before you delete them.
 * @param applicationKind is copied; NULL leaves the options' own.
 * @return 1 when the logger runs or is not wanted, 0 after a line that says why it does not run.
 */
ORVANE_API DDS_Boolean QEL_KX_XMLConfig_startWithXMLConfiguration(
    DDS_DomainParticipant* participant, QEL_KX_Options* options, const char* applicationKind);
/** @} */

PEXA_END_C

#endif
