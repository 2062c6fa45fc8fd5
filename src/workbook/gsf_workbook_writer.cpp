#include "gsf_workbook_writer.h"

#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-outfile.h>
#include <gsf/gsf-output-stdio.h>
#include <gsf/gsf-utils.h>

#include <mutex>

#include "biff_workbook.h"
#include "text/fault.h"

namespace halvane {

namespace {
std::string errorOf(GsfOutput* output, const char* otherwise) {
    const GError* error = gsf_output_error(output);
    return error && error->message ? error->message : otherwise;
}
}  // namespace

std::string GsfWorkbookWriter::write(const std::string& path,
                                     const std::vector<std::vector<std::string>>& rows) {
    std::string stream;
    try {
        stream = biffWorkbook(rows);
    } catch (const Fault& fault) {
        return fault.what();
    }
    static std::once_flag initialised;
    std::call_once(initialised, gsf_init);

    GError* error = nullptr;
    GsfOutput* sink = gsf_output_stdio_new(path.c_str(), &error);
    if (!sink) {
        std::string why = error && error->message ? error->message : "the file cannot be created";
        g_clear_error(&error);
        return why;
    }
    GsfOutfile* container = gsf_outfile_msole_new(sink);
    GsfOutput* book = gsf_outfile_new_child(container, "Workbook", FALSE);
    std::string why;
    if (!gsf_output_write(book, stream.size(), reinterpret_cast<const guint8*>(stream.data())))
        why = errorOf(book, "the workbook could not be written");
    if (!gsf_output_close(book) && why.empty()) why = errorOf(book, "the workbook could not be written");
    g_object_unref(book);
    // A failed part leaves the old file as it was: the sink drops its temporary file on close.
    if (!why.empty()) gsf_output_set_error(sink, 0, "%s", why.c_str());
    if (!gsf_output_close(GSF_OUTPUT(container)) && why.empty())
        why = errorOf(GSF_OUTPUT(container), "the file could not be written");
    if (!gsf_output_is_closed(sink) && !gsf_output_close(sink) && why.empty())
        why = errorOf(sink, "the file could not be written");
    g_object_unref(container);
    g_object_unref(sink);
    return why;
}

}  // namespace halvane
