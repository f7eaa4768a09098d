#pragma once

class QMenuBar;
class QWidget;

/// Shows every command of the menus with the keys that give it.
void showKeys(const QMenuBar& menus, QWidget* window);
