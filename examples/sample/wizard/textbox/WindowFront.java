package textbox;

import java.awt.AWTError;
import java.awt.BorderLayout;
import java.awt.GraphicsEnvironment;
import java.awt.HeadlessException;
import java.nio.file.Path;
import javax.swing.JButton;
import javax.swing.JFileChooser;
import javax.swing.JLabel;
import javax.swing.JOptionPane;
import javax.swing.JPanel;
import javax.swing.JTextField;

/** Three small dialogs: the folder, a problem with it, the end. */
final class WindowFront implements Front {
    private static final String TITLE = "Textbox Setup";
    private static final String[] BUTTONS = {"Install", "Cancel"};
    private static final int FOLDER_COLUMNS = 36;

    private WindowFront() {
    }

    /**
     * Opens the display.
     *
     * @return null when there is none. That shows itself in several ways; where the JVM came without
     *     the libraries for a display, in a {@link LinkageError} here or when this class is loaded.
     */
    static WindowFront open() {
        try {
            if (GraphicsEnvironment.isHeadless()) {
                return null;
            }
            GraphicsEnvironment.getLocalGraphicsEnvironment().getDefaultScreenDevice();
            return new WindowFront();
        } catch (HeadlessException | AWTError | InternalError noDisplay) {
            return null;
        }
    }

    @Override
    public String askFolder(String proposed) {
        JTextField folder = new JTextField(proposed, FOLDER_COLUMNS);
        int button = JOptionPane.showOptionDialog(
                null, folderPanel(folder), TITLE, JOptionPane.DEFAULT_OPTION,
                JOptionPane.PLAIN_MESSAGE, null, BUTTONS, BUTTONS[0]);
        if (button != 0) {
            return null;
        }
        String answer = folder.getText().trim();
        return answer.isEmpty() ? proposed : answer;
    }

    @Override
    public boolean showProblem(String problem) {
        JOptionPane.showMessageDialog(null, problem, TITLE, JOptionPane.ERROR_MESSAGE);
        return true;
    }

    @Override
    public void showDone(Path folder) {
        JOptionPane.showMessageDialog(
                null, "Textbox was installed in\n" + folder, TITLE,
                JOptionPane.INFORMATION_MESSAGE);
    }

    private static JPanel folderPanel(JTextField folder) {
        JButton browse = new JButton("Browse...");
        browse.addActionListener(event -> browse(folder));
        JPanel panel = new JPanel(new BorderLayout(8, 8));
        panel.add(new JLabel("Folder to install Textbox to:"), BorderLayout.NORTH);
        panel.add(folder, BorderLayout.CENTER);
        panel.add(browse, BorderLayout.EAST);
        return panel;
    }

    private static void browse(JTextField folder) {
        JFileChooser chooser = new JFileChooser(folder.getText());
        chooser.setFileSelectionMode(JFileChooser.DIRECTORIES_ONLY);
        if (chooser.showDialog(folder, "Choose") == JFileChooser.APPROVE_OPTION) {
            folder.setText(chooser.getSelectedFile().getPath());
        }
    }
}
