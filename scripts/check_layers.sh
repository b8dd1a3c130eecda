#!/usr/bin/env bash
# The layers run one way: platform <- core <- the protocol and session
# libraries <- shell <- main. The protocol libraries stand on each other in
# one order too, as CMake links them: access <- connection <- wire <-
# transfer <- board, media, links, nettools (these four never include one
# another). Reads every include under src/ and fails on
# one that runs upward, and on Qt Widgets outside shell/ and platform/.
set -u
cd "$(dirname "$0")/.."

rank() {
  case "$1" in
    platform) echo 0 ;;
    core) echo 1 ;;
    access) echo 2 ;;
    connection) echo 3 ;;
    wire) echo 4 ;;
    transfer) echo 5 ;;
    board|media|links|nettools) echo 6 ;;
    shell) echo 7 ;;
    main.cpp) echo 8 ;;
    *) echo -1 ;;
  esac
}

widgets='QAbstractButton|QAction|QApplication|QBoxLayout|QCheckBox|QColorDialog|QComboBox|QDialog|QDialogButtonBox|QFileDialog|QFontDialog|QFormLayout|QFrame|QGraphics[A-Za-z]*|QGridLayout|QGroupBox|QHBoxLayout|QInputDialog|QLabel|QLayout|QLineEdit|QListWidget|QMainWindow|QMenu|QMenuBar|QMessageBox|QPlainTextEdit|QProgressBar|QPushButton|QRadioButton|QScrollArea|QScrollBar|QSlider|QSpinBox|QSplitter|QStatusBar|QSystemTrayIcon|QTabWidget|QTextEdit|QToolBar|QToolButton|QToolTip|QTreeWidget|QVBoxLayout|QWidget|QtWidgets'

found=$(mktemp); trap 'rm -f "$found"' EXIT
for file in $(git ls-files 'src/*.cpp' 'src/*.h' 2>/dev/null || find src -name '*.cpp' -o -name '*.h'); do
  rel=${file#src/}
  own=${rel%%/*}
  ownRank=$(rank "$own")
  [ "$ownRank" -lt 0 ] && continue
  while IFS= read -r line; do
    target=$(sed -E 's/^#include +"([^/"]+)\/.*$/\1/' <<<"$line")
    targetRank=$(rank "$target")
    if [ "$targetRank" -gt "$ownRank" ] ||
       { [ "$targetRank" -eq 6 ] && [ "$ownRank" -eq 6 ] && [ "$target" != "$own" ]; }; then
      echo "$file: $line" >>"$found"
    fi
  done < <(grep -E '^#include +"[a-z]+/' "$file")
  if [ "$own" != shell ] && [ "$own" != platform ] && [ "$own" != main.cpp ]; then
    grep -HE "^#include +<($widgets)>" "$file" | sed -E 's/^([^:]+):/\1: /' >>"$found"
  fi
done

if [ -s "$found" ]; then
  echo "Layering: these includes run upward (or bring Qt Widgets below the window layer):"
  sort -u "$found"
  echo "1 layer check, 0 passed, 1 failed"
  exit 1
fi
echo "layers: no include runs upward"
