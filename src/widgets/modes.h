#pragma once

/** What a dialog that edits one record is opened for; its constructor takes it as a number. */
enum record_mode { mode_add = 0, mode_edit = 1 };

/** What a document editor is opened for. */
enum document_mode { document_new = 0, document_edit = 1, document_view = 5, document_audit = 6 };
