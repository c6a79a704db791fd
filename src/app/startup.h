#pragma once

class QApplication;

/**
 * Everything that the program does once its application exists: looks, version gate, login, main window.
 * Returns the status of the process.
 */
int startup(QApplication& application);
