/**
 * @file xml.h
 * @brief The XML configuration layer: parsing, extension classes, the object tree, saving.
 *
 * A configuration file is an XML document whose root element is `dds`. A @ref DDS_XMLParser turns
 * it into a tree of objects. Elements with a registered extension class become objects of that
 * class, which is called for everything inside them; all other elements become plain objects.
 *
 * Documents are untrusted input: document type declarations are refused, so there are no entities
 * but the five predefined ones and character references, and size, depth and number of elements are
 * limited.
 */
#ifndef PEXA_XML_H
#define PEXA_XML_H

#include "pexa/base.h"
#include "pexa/sequence.h"

PEXA_BEGIN_C

/**
 * @name Limits of a document
 * Beyond them parsing stops with an error.
 * @{
 */
/** Bytes of a document. */
#define DDS_XML_MAX_DOCUMENT_SIZE 4194304
/** Elements inside each other, the root included. */
#define DDS_XML_MAX_DEPTH 64
/** Elements of a document. */
#define DDS_XML_MAX_ELEMENTS 65536
/** Bytes of an element's own text, of an attribute and of a name. */
#define DDS_XML_MAX_TEXT_LENGTH 65536
/** Attributes of an element. */
#define DDS_XML_MAX_ATTRIBUTES 32
/** Errors that a parser keeps; later ones only count. */
#define DDS_XML_MAX_ERRORS 100
/** @} */

typedef struct DDS_XMLParser DDS_XMLParser;
typedef struct DDS_XMLExtensionClass DDS_XMLExtensionClass;
typedef struct DDS_XMLObject DDS_XMLObject;

/**
 * @name Parse context
 * The state of the parse that a callback is called from.
 * @{
 */
typedef struct DDS_XMLContext {
    /** The error indicator: 0 when a callback is called; a callback sets it to 1 to make the parse
     *  count as failed. Parsing goes on in either case. */
    QELBool error;
    /** The line being parsed, from 1; 0 outside a parse. */
    DDS_Long line;
    /** The innermost open element, or NULL. */
    const char* tagName;
    /** NULL in a context that no parser made. */
    DDS_XMLParser* parser;
} DDS_XMLContext;

/** @return the line being parsed, from 1; 0 for NULL. */
PEXA_API DDS_Long DDS_XMLContext_get_current_line_number(const DDS_XMLContext* context);

/**
 * A function that takes a parse error. Parse errors are reported by a call of such a function and
 * by the context's error indicator.
 * @param functionName the function that found the error.
 */
typedef void (*DDS_XMLParseErrorFunction)(const char* message, const char* functionName,
                                          DDS_Long line);
/** @} */

/**
 * @name Objects
 * An object of an extension class is a record of that class's own making which begins with a
 * DDS_XMLObject.
 * @{
 */
/** The base of every object in a tree. The members are the platform's; a zero-filled record counts
 *  as not initialised. */
struct DDS_XMLObject {
    /** NULL for a plain object. */
    DDS_XMLExtensionClass* extensionClass;
    DDS_XMLObject* parent;
    DDS_XMLObject* firstChild;
    DDS_XMLObject* lastChild;
    DDS_XMLObject* nextSibling;
    /** An owned heap string. */
    char* tagName;
};

/**
 * Initialises the base of a new object. The parser puts the object into the tree once the class's
 * constructor has returned it.
 * @param extensionClass, parent as the constructor got them; either may be NULL.
 * @param tagName is copied.
 * @param reserved 0.
 * @return 1, or 0 with the record zero-filled: NULL object or tag name, or no memory.
 */
PEXA_API DDS_Boolean DDS_XMLObject_initialize(DDS_XMLObject* self,
                                              DDS_XMLExtensionClass* extensionClass,
                                              DDS_XMLObject* parent, const char* tagName,
                                              DDS_Long reserved);
/** Frees what the base owns; neither the record nor its children. NULL and zero-filled records are
 *  ignored. */
PEXA_API void DDS_XMLObject_finalize(DDS_XMLObject* self);
/** @return the element's name, NULL for NULL and for an object that is not initialised. */
PEXA_API const char* DDS_XMLObject_get_tag_name(const DDS_XMLObject* self);
/** @return NULL for NULL and at the end, like the two that follow. */
PEXA_API DDS_XMLObject* DDS_XMLObject_get_first_child(const DDS_XMLObject* self);
PEXA_API DDS_XMLObject* DDS_XMLObject_get_next_sibling(const DDS_XMLObject* self);
PEXA_API DDS_XMLObject* DDS_XMLObject_get_parent(const DDS_XMLObject* self);
/** @} */

/**
 * @name Saving
 * @{
 */
/** Takes @p length bytes of output. @return 0 when they could not be written. */
typedef DDS_Boolean (*QELXMLSaveSink)(void* sinkData, const char* text, size_t length);

/** Where output goes. The helpers below write nothing once the error indicator is set, and set it
 *  when the sink fails. */
typedef struct QELXMLSaveContext {
    /** How deep the indentation is; one step is four blanks. */
    DDS_Long indentDepth;
    /** The error indicator: 1 once something went wrong. */
    QELBool error;
    QELXMLSaveSink sink;
    void* sinkData;
} QELXMLSaveContext;

/** Kinds of @ref DDS_XMLHelper_save_tag. */
#define DDS_XML_TAG_OPEN 7
#define DDS_XML_TAG_CLOSE 27

/** Writes the indentation of the current depth. */
PEXA_API void QELXMLSaveContext_indent(QELXMLSaveContext* context);
/** Writes formatted text as it stands, without indentation and escapes. */
PEXA_API void DDS_XMLHelper_save_freeform(QELXMLSaveContext* context, const char* format, ...)
    __attribute__((format(printf, 2, 3)));
/**
 * Writes a tag on an indented line of its own: the opening one and then one step deeper, or back
 * one step and the closing one. Any other kind sets the error indicator.
 */
PEXA_API void DDS_XMLHelper_save_tag(const char* tagName, int kind, QELXMLSaveContext* context);
/** Writes `<tag>value</tag>` on an indented line. */
PEXA_API void DDS_XMLHelper_save_long(const char* tagName, DDS_Long value,
                                      QELXMLSaveContext* context);
/** The same with a text, in which markup is escaped; NULL counts as empty. */
PEXA_API void DDS_XMLHelper_save_string(const char* tagName, const char* value,
                                        QELXMLSaveContext* context);
/** Writes the element with one indented line `<element>N</element>` per number in it; an empty or
 *  NULL sequence as `<tag/>`. */
PEXA_API void DDS_XMLHelper_save_long_seq(const char* tagName, const DDS_LongSeq* value,
                                          QELXMLSaveContext* context);
/** @} */

/**
 * @name Conversions
 * @{
 */
/**
 * Reads a truth value: true, yes and 1, or false, no and 0, in any case and with white space around
 * it. Any other text (and NULL) leaves `*flag` as it is, reports an error like
 * @ref DDS_XMLParser_report_error and sets the context's error indicator.
 * @param context may be NULL.
 * @return 1, or 0 after an error.
 */
PEXA_API DDS_Boolean DDS_XMLHelper_str_to_boolean(DDS_Boolean* flag, const char* text,
                                                  DDS_XMLContext* context);
/** Removes the white space at both ends of a text, in place. @return @p text, NULL for NULL. */
PEXA_API char* QELXMLHelper_strTrim(char* text);
/** @} */

/**
 * @name Extension classes
 * A class is the set of callbacks for one element name. They run on the parsing (saving, deleting)
 * thread. Tag names, attributes, texts and contexts are valid during the call only. Attributes are
 * alternately names and values, ended by NULL.
 * @{
 */
/**
 * Makes the object of an element.
 * @param parent the object of the enclosing element, NULL at the root.
 * @return the object, whose base is initialised, or NULL: the element counts as an error and is
 *   skipped with everything inside it.
 */
typedef DDS_XMLObject* (*DDS_XMLObjectNewFunction)(DDS_XMLExtensionClass* extensionClass,
                                                   DDS_XMLObject* parent,
                                                   const char* const* attributes,
                                                   DDS_XMLContext* context);
/** Ends an object that the class has made. */
typedef void (*DDS_XMLObjectDeleteFunction)(DDS_XMLObject* object);
/** An element starts: the object's own (right after the constructor) or any inside it. */
typedef void (*DDS_XMLOnStartElementFunction)(DDS_XMLObject* object, const char* tagName,
                                              const char* const* attributes,
                                              DDS_XMLContext* context);
/** An element ends: any inside the object's own, or that one itself. @param elementText its own
 *  text without the white space at both ends; never NULL. */
typedef void (*DDS_XMLOnEndElementFunction)(DDS_XMLObject* object, const char* tagName,
                                            const char* elementText, DDS_XMLContext* context);
/** Writes the object's element. @param reserved NULL. */
typedef void (*DDS_XMLObjectSaveFunction)(DDS_XMLObject* object, QELXMLSaveContext* context,
                                          void* reserved);

/**
 * Makes a class for the elements called @p tagName. Elements inside such an element are the
 * object's business and become no objects, also when they have a class.
 * @param tagName is copied.
 * @param userData stays the caller's.
 * @param reserved1, reserved2 NULL.
 * @param onStartElement, onEndElement, save may be NULL: nothing is done.
 * @return the class, or NULL after a report: NULL tag name, constructor or destructor, a reserved
 *   argument that is not NULL, or no memory. Free it with @ref DDS_XMLExtensionClass_delete.
 */
PEXA_API DDS_XMLExtensionClass* DDS_XMLExtensionClass_new(
    const char* tagName, void* userData, const void* reserved1, const void* reserved2,
    DDS_XMLOnStartElementFunction onStartElement, DDS_XMLOnEndElementFunction onEndElement,
    DDS_XMLObjectNewFunction newObject, DDS_XMLObjectDeleteFunction deleteObject,
    DDS_XMLObjectSaveFunction save);
/** Frees a class that no parser has registered any more; NULL is ignored. */
PEXA_API void DDS_XMLExtensionClass_delete(DDS_XMLExtensionClass* self);
/** @return the user data, NULL for NULL. */
PEXA_API void* DDS_XMLExtensionClass_get_user_data(const DDS_XMLExtensionClass* self);
/** @} */

/**
 * @name Parser
 * A parser reads one document and owns its tree. It is used by one thread at a time.
 *
 * Directly inside `dds` stand `types`, `qos_library`, `domain_library`,
 * `domain_participant_library`, `application_library`, `data`, and elements with a registered
 * class; any other element there is an error. Text there has no effect, and the middleware's log
 * has a warning about it. Further inside any element may stand.
 *
 * After an error of the contents (an element in the wrong place, a text that a class refuses)
 * parsing goes on, and there is a tree. A document that is not well-formed or exceeds a limit has
 * no tree.
 * @{
 */
/** One error of a parse. */
typedef struct DDS_XMLError {
    /** The file, or the name that was given to a text. */
    const char* fileName;
    /** From 1; 0 when the document could not be read at all. */
    DDS_Long line;
    /** The innermost element that was open, or empty. */
    const char* tagName;
    /** The error, and what was expected. */
    const char* message;
} DDS_XMLError;

/** @return NULL without memory. Free it with @ref DDS_XMLParser_delete. */
PEXA_API DDS_XMLParser* DDS_XMLParser_new(void);
/** Deletes the tree with all its objects, and the parser; NULL is ignored. */
PEXA_API void DDS_XMLParser_delete(DDS_XMLParser* self);
/**
 * Lets the parser hand the elements of that name to a class.
 * @param extensionClass must outlive the parser.
 * @return OK, BAD_PARAMETER (NULL), OUT_OF_RESOURCES, or PRECONDITION_NOT_MET: a class of the same
 *   name is registered, or a document has been parsed.
 */
PEXA_API DDS_ReturnCode_t
DDS_XMLParser_register_extension_class(DDS_XMLParser* self, DDS_XMLExtensionClass* extensionClass);
/**
 * Parses a file.
 * @return OK with a tree, also after errors in the contents (see @ref DDS_XMLParser_has_failed);
 *   ERROR without a tree: the file cannot be read, is not well-formed or exceeds a limit, or the
 *   root's class made no object; BAD_PARAMETER (NULL); PRECONDITION_NOT_MET for a second document;
 *   OUT_OF_RESOURCES. At the end all errors are reported in the middleware's log.
 */
PEXA_API DDS_ReturnCode_t DDS_XMLParser_parse_file(DDS_XMLParser* self, const char* fileName);
/** Parses @p length bytes of text. @param name stands for the file in errors. */
PEXA_API DDS_ReturnCode_t DDS_XMLParser_parse_string(DDS_XMLParser* self, const char* name,
                                                     const char* text, size_t length);
/** @return the object of the root element, which lives as long as the parser, or NULL. */
PEXA_API DDS_XMLObject* DDS_XMLParser_get_root(DDS_XMLParser* self);
/** @return 1 when there was any error, 0 else and for NULL. */
PEXA_API DDS_Boolean DDS_XMLParser_has_failed(DDS_XMLParser* self);
/** @return the number of errors, of which the first @ref DDS_XML_MAX_ERRORS are kept; -1 for NULL.
 */
PEXA_API DDS_Long DDS_XMLParser_get_error_count(DDS_XMLParser* self);
/**
 * @param index from 0. @param error gets texts that live as long as the parser.
 * @return OK, BAD_PARAMETER (NULL), or NO_DATA: no such error is kept.
 */
PEXA_API DDS_ReturnCode_t DDS_XMLParser_get_error(DDS_XMLParser* self, DDS_Long index,
                                                  DDS_XMLError* error);
/**
 * A @ref DDS_XMLParseErrorFunction that adds the error to the parser which runs on the calling
 * thread; without one it is reported in the middleware's log. The context's error indicator remains
 * the caller's to set.
 */
PEXA_API void DDS_XMLParser_report_error(const char* message, const char* functionName,
                                         DDS_Long line);
/**
 * Writes the tree: plain elements with their attributes and texts, the others as their class saves
 * them.
 * @return OK; PRECONDITION_NOT_MET without a tree; ERROR when writing or a class failed, the file
 *   then being as it was; BAD_PARAMETER (NULL); OUT_OF_RESOURCES.
 */
PEXA_API DDS_ReturnCode_t DDS_XMLParser_save_file(DDS_XMLParser* self, const char* fileName);
/** @return the tree as a text to be freed with @ref DDS_String_free, or NULL after a report. */
PEXA_API char* DDS_XMLParser_save_string(DDS_XMLParser* self);
/** @} */

PEXA_END_C

#endif
