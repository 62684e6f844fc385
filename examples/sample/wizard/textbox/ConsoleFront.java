package textbox;

import java.io.BufferedReader;
import java.io.FileInputStream;
import java.io.FileOutputStream;
import java.io.IOException;
import java.io.InputStream;
import java.io.InputStreamReader;
import java.io.OutputStream;
import java.io.OutputStreamWriter;
import java.io.PrintWriter;
import java.nio.file.Path;

/** A conversation, line by line, in the encoding of the user's locale. */
final class ConsoleFront implements Front {
    private static final String TERMINAL = "/dev/tty";

    private final BufferedReader in;
    private final PrintWriter out;

    private ConsoleFront(InputStream in, OutputStream out) {
        this.in = new BufferedReader(new InputStreamReader(in, Texts.nativeCharset()));
        this.out = new PrintWriter(new OutputStreamWriter(out, Texts.nativeCharset()));
        this.out.println();
        this.out.println("This sets up Textbox, which draws boxes around texts.");
    }

    /** With -console the launcher leaves us its standard input and output. */
    static ConsoleFront onStandardStreams() {
        return new ConsoleFront(System.in, System.out);
    }

    /**
     * Without -console the launcher keeps our standard output for its log, so that a question would
     * not be seen: the terminal is spoken to by its own name.
     *
     * @return null when the process has no terminal
     */
    static ConsoleFront onTerminal() {
        try {
            return new ConsoleFront(
                    new FileInputStream(TERMINAL), new FileOutputStream(TERMINAL));
        } catch (IOException noTerminal) {
            return null;
        }
    }

    @Override
    public String askFolder(String proposed) {
        out.println();
        out.println("Folder to install to (Enter for " + proposed + ", q to cancel):");
        String answer = ask();
        if (answer == null || answer.equals("q")) {
            out.println("Cancelled; nothing was installed.");
            out.flush();
            return null;
        }
        return answer.isEmpty() ? proposed : answer;
    }

    @Override
    public boolean showProblem(String problem) {
        out.println(problem);
        return true;
    }

    @Override
    public void showDone(Path folder) {
        out.println("Textbox was installed in " + folder);
        out.flush();
    }

    /** The trimmed answer, null at the end of the input. */
    private String ask() {
        out.print("> ");
        out.flush();
        try {
            String line = in.readLine();
            return line == null ? null : line.trim();
        } catch (IOException unreadable) {
            return null;
        }
    }
}
