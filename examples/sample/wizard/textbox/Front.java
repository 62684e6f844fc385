package textbox;

import java.nio.file.Path;

/** How the setup talks with the user: a window, a terminal, or nobody at all. */
interface Front {
    /** Asks for the folder to install to; null when the user wants no installation. */
    String askFolder(String proposed);

    /**
     * Tells what is wrong with the folder last asked for.
     *
     * @return whether there is somebody who can be asked for another one
     */
    boolean showProblem(String problem);

    void showDone(Path folder);
}
