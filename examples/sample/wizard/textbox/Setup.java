package textbox;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;

/**
 * The wizard: asks for a folder and installs Textbox there. Its exit code becomes that of the whole
 * setup file, and what a failed run writes to standard error is shown to the user by the launcher.
 */
public final class Setup {
    static final int DONE = 0;
    static final int FAILED = 3;
    /** The launcher knows this code: a user who cancels is not shown an error. */
    static final int CANCELLED = 232;

    private Setup() {
    }

    public static void main(String[] args) {
        int code;
        try {
            code = run(Options.parse(args));
        } catch (SetupException failure) {
            System.err.println(failure.getMessage());
            code = FAILED;
        }
        // A window keeps threads of its own alive.
        System.exit(code);
    }

    private static int run(Options options) throws SetupException {
        Front front = chooseFront(options);
        String proposed = Texts.toFolder(options.folder).toString();
        String folder;
        while ((folder = front.askFolder(proposed)) != null) {
            Path installed = install(folder, front);
            if (installed != null) {
                record(options.record, installed);
                front.showDone(installed);
                return DONE;
            }
        }
        return CANCELLED;
    }

    /** Null when it failed and the user is to be asked again. */
    private static Path install(String folder, Front front) throws SetupException {
        try {
            return Installer.install(folder);
        } catch (SetupException failure) {
            if (front.showProblem(failure.getMessage())) {
                return null;
            }
            throw failure;
        }
    }

    private static Front chooseFront(Options options) throws SetupException {
        if (options.silent) {
            return new SilentFront();
        }
        if (options.console) {
            return ConsoleFront.onStandardStreams();
        }
        Front front = openWindow();
        if (front == null) {
            front = ConsoleFront.onTerminal();
        }
        if (front == null) {
            throw new SetupException("There is neither a display nor a terminal to ask for the"
                    + " folder. Run the setup again with -silent.\n" + Options.USAGE);
        }
        return front;
    }

    private static Front openWindow() {
        try {
            return WindowFront.open();
        } catch (LinkageError noWindowSystemInThisJvm) {
            return null;
        }
    }

    private static void record(String file, Path folder) throws SetupException {
        if (file == null) {
            return;
        }
        try {
            Files.write(Texts.toPath(file), (folder + "\n").getBytes(Texts.nativeCharset()));
        } catch (IOException error) {
            throw new SetupException("Cannot write " + file + ": " + Texts.reason(error));
        }
    }
}
