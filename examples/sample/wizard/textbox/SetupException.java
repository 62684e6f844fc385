package textbox;

/** A step of the setup that failed. The message is a whole sentence for the user. */
final class SetupException extends Exception {
    private static final long serialVersionUID = 1L;

    SetupException(String message) {
        super(message);
    }
}
