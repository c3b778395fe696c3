// Plays the engine: a window with the engine's title that takes its key chords, writes the files
// that the engine writes and says in a log, with the time, what came to it.
//
// Everything happens in the current directory. The title is the first line of "zoka.ver". Requests
// come as lines of a file "engine.do", which is removed when they are done:
//   mode USB           the mode in "status.cfg"
//   lock lock_to_txcr  the transmitter mode in "status.cfg"
//   tune 7074000       a frequency request in "transmitter.cfg"
//   transmit on|off    the transmit state in "transmitter.cfg"
//   read NAME          the file's lines, into the log
//   title TEXT, iconify, hang MILLISECONDS, held
// "engine.log": milliseconds since 1970, then "open", "chord Ctrl+S", "read ...", "held ...", "close".

import java.awt.Font;
import java.awt.Frame;
import java.awt.GridLayout;
import java.awt.KeyboardFocusManager;
import java.awt.event.InputEvent;
import java.awt.event.KeyEvent;
import java.awt.event.WindowAdapter;
import java.awt.event.WindowEvent;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.StandardOpenOption;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Map;
import java.util.TreeSet;
import javax.swing.BorderFactory;
import javax.swing.JFrame;
import javax.swing.JLabel;
import javax.swing.JPanel;
import javax.swing.SwingUtilities;
import javax.swing.Timer;

public class VeltEngine {
    private static final Map<Integer, String> MODES = Map.of(KeyEvent.VK_L, "LSB", KeyEvent.VK_U, "USB",
            KeyEvent.VK_W, "CW-USB", KeyEvent.VK_D, "DRM", KeyEvent.VK_I, "DIG");
    private static final Path REQUESTS = Path.of("engine.do");

    private final JFrame frame = new JFrame(title());
    private final JLabel state = new JLabel();
    private final JLabel last = new JLabel("no key yet");
    private final TreeSet<String> held = new TreeSet<>();
    private String mode = "USB";
    private String lock = "";
    private String transmit = "off";
    private String request = "0";
    private boolean started = false;

    public static void main(String[] arguments) {
        SwingUtilities.invokeLater(() -> new VeltEngine().open());
    }

    private static String title() {
        try {
            String first = Files.readAllLines(Path.of("zoka.ver")).get(0).trim();
            return first.isEmpty() ? "VELT V2.5." : first;
        } catch (IOException | IndexOutOfBoundsException missing) {
            return "VELT V2.5.";
        }
    }

    private void open() {
        JPanel panel = new JPanel(new GridLayout(0, 1, 8, 8));
        panel.setBorder(BorderFactory.createEmptyBorder(16, 24, 16, 24));
        for (JLabel label : new JLabel[] {state, last}) {
            label.setFont(label.getFont().deriveFont(Font.BOLD, 18f));
            panel.add(label);
        }
        frame.add(panel);
        frame.setSize(420, 160);
        frame.setLocation(100, 400);
        frame.setDefaultCloseOperation(JFrame.DISPOSE_ON_CLOSE);
        frame.addWindowListener(new WindowAdapter() {
            @Override public void windowOpened(WindowEvent event) {
                log("open");
            }
            @Override public void windowClosed(WindowEvent event) {
                log("close");
                System.exit(0);
            }
        });
        KeyboardFocusManager.getCurrentKeyboardFocusManager().addKeyEventDispatcher(this::take);
        writeCalibration();
        writeStatus();
        writeTransmitter();
        new Timer(10, event -> doRequests()).start();
        frame.setVisible(true);
    }

    private boolean take(KeyEvent event) {
        String key = KeyEvent.getKeyText(event.getKeyCode());
        boolean modifier = switch (event.getKeyCode()) {
            case KeyEvent.VK_CONTROL, KeyEvent.VK_SHIFT, KeyEvent.VK_ALT, KeyEvent.VK_META,
                    KeyEvent.VK_WINDOWS, KeyEvent.VK_ALT_GRAPH -> true;
            default -> false;
        };
        if (event.getID() == KeyEvent.KEY_RELEASED) held.remove(key);
        if (event.getID() != KeyEvent.KEY_PRESSED) return false;
        held.add(key);
        if (modifier) return false;
        String modifiers = InputEvent.getModifiersExText(event.getModifiersEx());
        String chord = (modifiers.isEmpty() ? "" : modifiers + "+") + key;
        log("chord " + chord);
        last.setText("last key: " + chord);
        if (event.getModifiersEx() == InputEvent.CTRL_DOWN_MASK) command(event.getKeyCode());
        return true;
    }

    private void command(int key) {
        if (MODES.containsKey(key)) {
            mode = MODES.get(key);
            writeStatus();
        } else if (key == KeyEvent.VK_T || key == KeyEvent.VK_R) {
            transmit = key == KeyEvent.VK_T ? "on" : "off";
            writeTransmitter();
        } else if (key == KeyEvent.VK_S) {
            started = true;
            show();
        }
    }

    private void doRequests() {
        if (!Files.exists(REQUESTS)) return;
        List<String> lines;
        try {
            lines = Files.readAllLines(REQUESTS);
        } catch (IOException later) {
            return;
        }
        for (String line : lines) {
            String[] words = line.split(" ", 2);
            doRequest(words[0], words.length > 1 ? words[1] : "");
        }
        try {
            Files.delete(REQUESTS);
        } catch (IOException gone) {
            log("cannot remove " + REQUESTS + ": " + gone);
        }
    }

    private void doRequest(String what, String value) {
        switch (what) {
            case "mode" -> mode = value;
            case "lock" -> lock = value;
            case "tune" -> request = value;
            case "transmit" -> transmit = value;
            case "read" -> logFile(value);
            case "title" -> frame.setTitle(value);
            case "iconify" -> frame.setExtendedState(Frame.ICONIFIED);
            case "held" -> log("held " + held);
            case "hang" -> hang(Long.parseLong(value));
            default -> log("what is \"" + what + "\"?");
        }
        if (what.equals("mode") || what.equals("lock")) writeStatus();
        if (what.equals("tune") || what.equals("transmit")) writeTransmitter();
    }

    private static void hang(long milliseconds) {
        try {
            Thread.sleep(milliseconds);
        } catch (InterruptedException over) {
            Thread.currentThread().interrupt();
        }
    }

    private void writeStatus() {
        write("status.cfg", List.of(mode, "300", "2700", "0", lock, "off"));
        show();
    }

    private void writeTransmitter() {
        write("transmitter.cfg", List.of(transmit, request));
        request = "0";
        show();
    }

    private void writeCalibration() {
        List<String> lines = new ArrayList<>(List.of("0", "0", "12"));
        for (String name : new String[] {"USB", "LSB", "CW-USB", "CW-LSB"}) {
            lines.addAll(Arrays.asList(name, "0", "0", "12"));
        }
        write("calall.cfg", lines);
    }

    private void show() {
        state.setText((started ? "started, " : "stopped, ") + mode + ", "
                + (transmit.equals("on") ? "TX" : "RX"));
    }

    private static void write(String name, List<String> lines) {
        try {
            Path part = Path.of(name + ".part");
            Files.write(part, lines);
            Files.move(part, Path.of(name), StandardCopyOption.ATOMIC_MOVE);
        } catch (IOException problem) {
            log("cannot write " + name + ": " + problem);
        }
    }

    private static void logFile(String name) {
        try {
            log("read " + name + ": " + String.join("|", Files.readAllLines(Path.of(name))));
        } catch (IOException problem) {
            log("read " + name + ": (none)");
        }
    }

    private static void log(String text) {
        String line = System.currentTimeMillis() + " " + text + "\n";
        try {
            Files.writeString(Path.of("engine.log"), line, StandardOpenOption.CREATE,
                    StandardOpenOption.APPEND);
        } catch (IOException problem) {
            System.err.print(line);
        }
    }
}
